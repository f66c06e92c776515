#include "sandbox/messenger/DeepLink.h"

#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

namespace messenger {
namespace {
constexpr int longestLink = 8 * 1024; // characters
constexpr int longestText = 1000; // what the sheet can show whole
constexpr int longestRecipient = 100;

std::optional<DeepLink> refuse(QString *fault, const QString &complaint)
{
    *fault = complaint;
    return std::nullopt;
}
}

std::optional<DeepLink> DeepLink::parse(
    const QString &link, const QStringList &apps, QString *fault)
{
    if (link.size() > longestLink)
        return refuse(fault, QStringLiteral("the link is longer than any of ours"));
    const QUrl url(link, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return refuse(fault, QStringLiteral("this is no link"));
    if (!apps.contains(url.scheme()))
        return refuse(fault,
            QStringLiteral("unknown scheme \"%1\"; known are %2")
                .arg(url.scheme(), apps.join(QStringLiteral(", "))));
    if (url.host() != QStringLiteral("send") || !url.path().isEmpty() || url.hasFragment()
        || url.port() != -1 || !url.userInfo().isEmpty())
        return refuse(fault, QStringLiteral("expected %1://send?...").arg(url.scheme()));

    DeepLink parsed;
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto &[key, value] : items) {
        QString *place = nullptr;
        if (key == QStringLiteral("app"))
            place = &parsed.app;
        else if (key == QStringLiteral("to"))
            place = &parsed.recipient;
        else if (key == QStringLiteral("text"))
            place = &parsed.text;
        if (place == nullptr || !place->isEmpty())
            return refuse(
                fault, QStringLiteral("\"%1\" is unknown or stands twice in the link").arg(key));
        *place = value;
    }
    if (parsed.app != url.scheme())
        return refuse(fault, QStringLiteral("the link is not for the app of its scheme"));
    if (parsed.recipient.isEmpty() || parsed.recipient.size() > longestRecipient)
        return refuse(fault, QStringLiteral("the link names no recipient, or too long a one"));
    if (parsed.text.isEmpty() || parsed.text.size() > longestText)
        return refuse(fault, QStringLiteral("the link holds no message, or too long a one"));
    return parsed;
}

}
