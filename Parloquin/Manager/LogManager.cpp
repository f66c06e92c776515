#include "Parloquin/Manager/LogManager.h"

#include "Parloquin/Extension/Encodable+Extension.h"

#include <algorithm>
#include <cstdio>

namespace parloquin {

namespace {

/// A line of standard output while it is being written; nobody else writes in between.
class Line {
public:
    Line() { ::flockfile(stdout); }
    ~Line()
    {
        std::putc('\n', stdout);
        std::fflush(stdout);
        ::funlockfile(stdout);
    }
    Q_DISABLE_COPY_MOVE(Line)

    void write(QStringView text) const
    {
        constexpr qsizetype most = 16384; // characters that are converted at once
        while (!text.isEmpty()) {
            auto piece = text.first(std::min(most, text.size()));
            if (piece.size() < text.size() && piece.back().isHighSurrogate())
                piece.chop(1);
            const QByteArray utf8 = piece.toUtf8();
            std::fwrite(utf8.constData(), 1, static_cast<size_t>(utf8.size()), stdout);
            text = text.sliced(piece.size());
        }
    }
};

} // namespace

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
    const Line out;
    out.write(line);
}

void print(const Dump &dump)
{
    const Line out;
    dump.write([&out](QStringView piece) { out.write(piece); });
}

} // namespace parloquin
