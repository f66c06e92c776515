#include "Parloquin/Platform/UrlOpener.h"

#include "Parloquin/Platform/LinkHandlers.h"
#include "Parloquin/Platform/Rehearsal.h"

#include <optional>

namespace parloquin::UrlOpener {

namespace {

/// \return the scheme of a link that may be opened, in small letters; else empty
QString openable(const QUrl &url)
{
    // A file: link would run or show whatever the service names on this device.
    const QString scheme = url.scheme().toLower();
    return url.isValid() && scheme != QStringLiteral("file") ? scheme : QString();
}

} // namespace

QUrl parse(const QString &text) { return QUrl(text, QUrl::StrictMode); }

bool canOpen(const QUrl &url)
{
    const QString scheme = openable(url);
    if (scheme.isEmpty())
        return false;
    const auto answer = Rehearsal::askDesktop("can " + scheme.toUtf8());
    return answer ? *answer : LinkHandlers::handles(scheme);
}

void open(const QUrl &url, const Report &report)
{
    std::optional<bool> isOpened = false;
    if (!openable(url).isEmpty())
        isOpened = Rehearsal::askDesktop("open " + url.toEncoded());
    if (!isOpened)
        isOpened = LinkHandlers::launch(url, report);
    if (*isOpened)
        return;
    report(
        QStringLiteral("No installed app opens %1: links; install one that registers the scheme.")
            .arg(url.scheme()));
}

} // namespace parloquin::UrlOpener
