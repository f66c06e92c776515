#pragma once

#include <QtCore/QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What the fuzzer calls, and Replay.cpp where there is none.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Ends the program where a property does not hold; the fuzzer keeps the input then.
inline void require(bool holds, const char *property)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", property);
    std::abort();
}

/// A copy that ends where the input ends, so that reading on is seen.
inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return { reinterpret_cast<const char *>(data), static_cast<qsizetype>(size) };
}
