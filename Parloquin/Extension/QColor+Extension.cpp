#include "Parloquin/Extension/QColor+Extension.h"

#include <algorithm>

namespace parloquin {
namespace {

quint32 scannedHex(QStringView text)
{
    quint32 value = 0;
    for (const QChar character : text) {
        const char16_t lower = character.toLower().unicode();
        if (lower >= u'0' && lower <= u'9')
            value = value * 16 + (lower - u'0');
        else if (lower >= u'a' && lower <= u'f')
            value = value * 16 + (lower - u'a' + 10);
        else
            break;
    }
    return value;
}

/// User-perceived length: characters outside the basic plane count once.
qsizetype characterCount(QStringView text)
{
    return std::count_if(
        text.begin(), text.end(), [](QChar unit) { return !unit.isLowSurrogate(); });
}

QStringView trimmedToAlphanumerics(QStringView text)
{
    while (!text.isEmpty() && !text.front().isLetterOrNumber() && !text.front().isMark())
        text = text.mid(1);
    while (!text.isEmpty() && !text.back().isLetterOrNumber() && !text.back().isMark())
        text.chop(1);
    return text;
}

} // namespace

QColor colorFromHexString(const QString &hexString)
{
    const QStringView text = trimmedToAlphanumerics(hexString);
    const quint32 value = scannedHex(text);
    const auto byte = [value](int shift) { return static_cast<int>(value >> shift & 0xff); };
    const auto digit = [value](int shift) { return static_cast<int>(value >> shift & 0xf) * 17; };
    switch (characterCount(text)) {
    case 3:
        return { digit(8), digit(4), digit(0) };
    case 6:
        return { byte(16), byte(8), byte(0) };
    case 8:
        return { byte(16), byte(8), byte(0), byte(24) };
    default:
        return { 1, 1, 0, 1 };
    }
}

} // namespace parloquin
