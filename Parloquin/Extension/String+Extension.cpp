#include "Parloquin/Extension/String+Extension.h"

namespace parloquin {

namespace {

int digitOf(QChar c)
{
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    if (c >= u'a' && c <= u'f')
        return c.unicode() - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c.unicode() - u'A' + 10;
    return -1;
}

} // namespace

std::optional<QByteArray> hexadecimal(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size() / 2);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int first = digitOf(text[i]);
        if (first < 0)
            continue;
        const int second = i + 1 < text.size() ? digitOf(text[i + 1]) : -1;
        bytes.append(static_cast<char>(second < 0 ? first : first * 16 + second));
        if (second >= 0)
            ++i;
    }
    return bytes.isEmpty() ? std::nullopt : std::optional(bytes);
}

QString optionalDescription(const std::optional<QString> &text)
{
    if (!text)
        return QStringLiteral("nil");
    QString out = QStringLiteral("Optional(\"");
    for (const QChar c : *text) {
        switch (c.unicode()) {
        case u'"':
            out += QStringLiteral("\\\"");
            break;
        case u'\\':
            out += QStringLiteral("\\\\");
            break;
        case u'\n':
            out += QStringLiteral("\\n");
            break;
        case u'\r':
            out += QStringLiteral("\\r");
            break;
        case u'\t':
            out += QStringLiteral("\\t");
            break;
        case u'\0':
            out += QStringLiteral("\\0");
            break;
        default:
            out += c;
        }
    }
    return out + QStringLiteral("\")");
}

} // namespace parloquin
