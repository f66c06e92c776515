#include "Parloquin/Manager/LogManager.h"

#include <algorithm>
#include <cstdio>

namespace parloquin {

LogManager &LogManager::shared()
{
    static LogManager instance;
    return instance;
}

void LogManager::log(const QString &message, bool isError) const
{
    print(QStringLiteral("\n\n[Parloquin]"));
    if (isError)
        print(QStringLiteral("\u26A0\uFE0F"));
    print(message);
    print(QStringLiteral("[Parloquin]\n\n"));
}

void print(const QString &line)
{
    // Converted piece by piece: a list of countries prints a megabyte.
    constexpr qsizetype most = 16384; // characters
    ::flockfile(stdout);
    for (QStringView rest = line; !rest.isEmpty();) {
        auto piece = rest.first(std::min(most, rest.size()));
        if (piece.size() < rest.size() && piece.back().isHighSurrogate())
            piece.chop(1);
        const QByteArray text = piece.toUtf8();
        std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
        rest = rest.sliced(piece.size());
    }
    std::putc('\n', stdout);
    std::fflush(stdout);
    ::funlockfile(stdout);
}

} // namespace parloquin
