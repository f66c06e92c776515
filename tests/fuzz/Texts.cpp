// Short texts that a host or the service writes: links, and by hand keys, colours, names.
#include "Parloquin/Extension/QColor+Extension.h"
#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Extension/String+Extension.h"
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "fuzz/Fuzz.h"
#include "sandbox/messenger/DeepLink.h"
#include "sandbox/service/Cipher.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QtEndian>

#include <algorithm>

using namespace parloquin;

namespace {

/// For another app: one plain argument for it, or none.
void readLink(const QByteArray &bytes, const QString &text)
{
    const QUrl url = UrlOpener::parse(text);
    const QByteArray link = url.toEncoded();
    const auto isPlain = [](char c) { return c > ' ' && c < '\x7f' && c != '"'; };
    const bool isWhole = url.isValid() && !url.scheme().isEmpty(); // no other has a handler
    require(!isWhole || std::all_of(link.begin(), link.end(), isPlain), "plain characters");
    require(!isWhole || std::isalpha(link[0]) != 0, "no option of a command");
    require(!isWhole || UrlOpener::parse(QString::fromLatin1(link)).toEncoded() == link,
        "read again it is the same link");
    require(url.scheme() != QStringLiteral("file") || !UrlOpener::canOpen(url), "no files");

    const QString report = URLSchemeManager().getInstalledAppsOnDevice({ { text } });
    const QJsonObject apps = QJsonDocument::fromJson(report.toUtf8()).object();
    require(apps.size() == 1 && apps.begin().key() == text, "the report names what was asked for");

    using messenger::DeepLink;
    const QString parlo = QStringLiteral("parlo");
    QString fault;
    const auto read = DeepLink::parse(text, { parlo }, &fault);
    require(read ? read->app == parlo && !read->text.isEmpty() && !read->recipient.isEmpty()
                 : !fault.isEmpty(),
        "whole or refused");
    const QUrl composed = UrlOpener::parse(QStringLiteral("parlo://send?app=parlo&to=x&text=")
        + QString::fromLatin1(QUrl::toPercentEncoding(text)));
    const auto passed =
        DeepLink::parse(QString::fromLatin1(composed.toEncoded()), { parlo }, &fault);
    const auto points = text.toUcs4(); // those that are no characters stay encoded
    const bool isOdd = bytes.size() > 800
        || std::any_of(
            points.begin(), points.end(), [](char32_t c) { return QChar::isNonCharacter(c); });
    require(passed ? passed->text == text || isOdd : text.isEmpty() || isOdd, "a message arrives");
}

} // namespace

void fuzz(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    readLink(bytes, text);
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
