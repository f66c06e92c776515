#include "Parloquin/Platform/Linux/MachineInfo.h"

#include <QtCore/QList>

#include <optional>

namespace parloquin {

namespace {

// The file is read by shells too, so quotes, joined parts and backslashes count; expansions do not.
std::optional<QByteArray> unquoted(const QByteArray &text)
{
    QByteArray value;
    char quote = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (c == '\\' && quote != '\'') {
            if (++i == text.size())
                return std::nullopt;
            // Within double quotes a backslash stands for itself but before these.
            if (quote == '"' && !QByteArrayLiteral("\"\\$`").contains(text.at(i)))
                value += '\\';
            value += text.at(i);
        } else if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == quote) {
            quote = 0;
        } else {
            value += c;
        }
    }
    if (quote != 0)
        return std::nullopt;
    return value;
}

} // namespace

QString machineInfoValue(const QByteArray &file, const QByteArray &name)
{
    QByteArray found;
    const auto lines = file.split('\n');
    for (const QByteArray &raw : lines) {
        const QByteArray line = raw.trimmed();
        if (!line.startsWith(name + '='))
            continue;
        if (const auto value = unquoted(line.mid(name.size() + 1)))
            found = *value; // as in a shell, the last assignment holds
    }
    return QString::fromUtf8(found).trimmed();
}

} // namespace parloquin
