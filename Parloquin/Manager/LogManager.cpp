#include "Parloquin/Manager/LogManager.h"

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
    const QByteArray text = line.toUtf8() + '\n';
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace parloquin
