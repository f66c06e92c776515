// Short texts that a host or the service writes by hand: keys, colours, names.
#include "Parloquin/Extension/QColor+Extension.h"
#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Extension/String+Extension.h"
#include "fuzz/Fuzz.h"
#include "sandbox/service/Cipher.h"

#include <algorithm>

using namespace parloquin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QString text = QString::fromUtf8(bytes);

    const auto key = hexadecimal(text);
    const auto digits = std::count_if(text.begin(), text.end(),
        [](QChar c) { return c.unicode() < 0x80 && std::isxdigit(c.unicode()) != 0; });
    require(key ? key->size() <= digits && key->size() * 2 >= digits : digits == 0,
        "one or two digits make a byte");
    if (const auto strict = sandbox::fromHex({ bytes.constData(), size }))
        require(key == QByteArray::fromStdString(*strict), "whole pairs mean what they say");
    require(hexadecimal(QString::fromLatin1(bytes.toHex(' ').toUpper()))
            == (size == 0 ? std::nullopt : std::optional(bytes)),
        "bytes written in digits come back");

    const QColor color = colorFromHexString(text);
    require(color.isValid() && color.spec() == QColor::Rgb, "any text is a colour");
    const QString spelled = QString::fromLatin1(bytes.left(4).toHex());
    const auto channel = [&bytes](qsizetype i) { return static_cast<std::uint8_t>(bytes[i]); };
    if (size >= 4)
        require(colorFromHexString(u'#' + spelled)
                == QColor(channel(1), channel(2), channel(3), channel(0)),
            "AARRGGBB");
    if (size >= 3)
        require(colorFromHexString(spelled.left(6).toUpper())
                == QColor(channel(0), channel(1), channel(2)),
            "RRGGBB");

    const QString first = firstCharacter(text);
    const QString shorter = shortenedByOne(text);
    require(text.startsWith(first) && first.isEmpty() == text.isEmpty(), "a text has a first one");
    require(
        text.startsWith(shorter) && shorter.isEmpty() == text.isEmpty(), "never shortened away");
    require(shorter != text || firstCharacter(text) == text, "two are shortened to one");
    require(optionalDescription(text).startsWith(QStringLiteral("Optional(\"")), "shown");
    return 0;
}
