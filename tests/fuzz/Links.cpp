// Links that the service names: one plain argument for another app, or none.
#include "Parloquin/Manager/URLSchemeManager.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "fuzz/Fuzz.h"
#include "sandbox/messenger/DeepLink.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>

using namespace parloquin;

void fuzz(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
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
