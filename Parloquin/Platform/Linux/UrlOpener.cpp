#include "Parloquin/Platform/UrlOpener.h"

#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Platform/Linux/GLibPointers.h"

namespace parloquin::UrlOpener {

namespace {

using AppInfo = GLibPointer<GAppInfo>;

AppInfo handler(const QUrl &url)
{
    // A file: link would run or show whatever the service names on this device.
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || scheme.isEmpty() || scheme == QStringLiteral("file"))
        return {};
    AppInfo app(g_app_info_get_default_for_uri_scheme(scheme.toUtf8().constData()));
    // An app that takes no links would be started without this one.
    if (app && !g_app_info_supports_uris(app.get()))
        return {};
    return app;
}

} // namespace

QUrl parse(const QString &text) { return QUrl(text, QUrl::StrictMode); }

bool canOpen(const QUrl &url) { return handler(url) != nullptr; }

void open(const QUrl &url)
{
    const AppInfo app = handler(url);
    if (!app) {
        LogManager::shared().log(
            QStringLiteral(
                "No installed app opens %1: links; install one that registers the scheme.")
                .arg(url.scheme()),
            true);
        return;
    }

    // The desktop's library quotes the link into the handler's command line itself: it arrives as
    // one argument. It cannot pass for an option, since a scheme begins with a letter.
    QByteArray link = url.toEncoded();
    GList links { link.data(), nullptr, nullptr };
    GError *error = nullptr;
    if (g_app_info_launch_uris(app.get(), &links, nullptr, &error) == FALSE) {
        LogManager::shared().log(
            QStringLiteral("Cannot open the app for %1: links: %2")
                .arg(url.scheme(),
                    error ? QString::fromUtf8(error->message) : QStringLiteral("no reason given")),
            true);
    }
    g_clear_error(&error);
}

} // namespace parloquin::UrlOpener
