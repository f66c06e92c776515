#pragma once

#include <QtCore/QByteArray>

#include <cstdint>
#include <cstdlib>
#include <iostream>

/// Each program's own: what it does with an input.
void fuzz(const QByteArray &bytes);

// What the fuzzer calls, and Replay.cpp where there is none.
extern "C" [[gnu::used]] inline int LLVMFuzzerTestOneInput(
    const std::uint8_t *data, std::size_t size)
{
    fuzz({ reinterpret_cast<const char *>(data), static_cast<qsizetype>(size) });
    return 0;
}

/// Ends the program where a property does not hold; the fuzzer keeps the input then.
inline void require(bool holds, const char *property)
{
    if (holds)
        return;
    std::cerr << "does not hold: " << property << std::endl;
    std::abort();
}
