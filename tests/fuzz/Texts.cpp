// Short texts that a host or the service writes by hand: keys, colours, names.
#include "Parloquin/Extension/QColor+Extension.h"
#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Extension/String+Extension.h"
#include "fuzz/Fuzz.h"
#include "sandbox/service/Cipher.h"

#include <QtCore/QtEndian>

#include <algorithm>

using namespace parloquin;

void fuzz(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    const auto key = hexadecimal(text);
    const auto isDigit = [](QChar c) { return c.unicode() < 0x80 && isxdigit(c.unicode()) != 0; };
    const auto digits = std::count_if(text.begin(), text.end(), isDigit);
    require(key ? key->size() <= digits && key->size() * 2 >= digits : digits == 0,
        "one or two digits make a byte");
    if (const auto strict = sandbox::fromHex(bytes.toStdString()))
        require(key == QByteArray::fromStdString(*strict), "whole pairs mean what they say");

    require(colorFromHexString(text).isValid(), "any text is a colour");
    if (bytes.size() >= 4)
        require(colorFromHexString(u'#' + QString::fromLatin1(bytes.left(4).toHex()))
                == QColor::fromRgba(qFromBigEndian<QRgb>(bytes.data())),
            "AARRGGBB");

    const QString first = firstCharacter(text);
    const QString shorter = shortenedByOne(text);
    require(text.startsWith(first) && first.isEmpty() == text.isEmpty(), "a text has a first one");
    require(text.startsWith(shorter) && shorter.isEmpty() == text.isEmpty(), "one is left");
    require(shorter != text || firstCharacter(text) == text, "two are shortened to one");
}
