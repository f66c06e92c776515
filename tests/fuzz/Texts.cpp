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
    const auto isDigit = [](QChar c) { return c.unicode() < 0x80 && isxdigit(c.unicode()) != 0; };
    const auto digits = std::count_if(text.begin(), text.end(), isDigit);
    require(key ? key->size() <= digits && key->size() * 2 >= digits : digits == 0,
        "one or two digits make a byte");
    if (const auto strict = sandbox::fromHex({ bytes.constData(), size }))
        require(key == QByteArray::fromStdString(*strict), "whole pairs mean what they say");

    require(colorFromHexString(text).isValid(), "any text is a colour");
    if (size >= 4)
        require(colorFromHexString(u'#' + QString::fromLatin1(bytes.left(4).toHex()))
                == QColor(data[1], data[2], data[3], data[0]),
            "AARRGGBB");

    const QString first = firstCharacter(text);
    const QString shorter = shortenedByOne(text);
    require(text.startsWith(first) && first.isEmpty() == text.isEmpty(), "a text has a first one");
    require(text.startsWith(shorter) && shorter.isEmpty() == text.isEmpty(), "one is left");
    require(shorter != text || firstCharacter(text) == text, "two are shortened to one");
    return 0;
}
