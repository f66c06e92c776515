#pragma once

#include <QtCore/QByteArray>

#include <cstdint>
#include <cstdlib>
#include <iostream>

// What the fuzzer calls, and Replay.cpp where there is none.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Ends the program where a property does not hold; the fuzzer keeps the input then.
inline void require(bool holds, const char *property)
{
    if (holds)
        return;
    std::cerr << "does not hold: " << property << std::endl;
    std::abort();
}

inline QByteArray bytesOf(const std::uint8_t *data, std::size_t size)
{
    return { reinterpret_cast<const char *>(data), static_cast<qsizetype>(size) };
}
