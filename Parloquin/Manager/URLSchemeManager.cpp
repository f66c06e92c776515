#include "Parloquin/Manager/URLSchemeManager.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Manager/DeveloperLog.h"
#include "Parloquin/Platform/UrlOpener.h"

#include <QtCore/QJsonObject>

namespace parloquin {

bool URLSchemeManager::checkIfAppIsInstalled(const QString &urlScheme) const
{
    const QUrl url = UrlOpener::parse(urlScheme);
    const bool isInstalled = url.isValid() && UrlOpener::canOpen(url);
    if (!isInstalled)
        qCWarning(developerLog, "%ls: no handler for its links, so its app counts as not installed",
            qUtf16Printable(urlScheme));
    return isInstalled;
}

QString URLSchemeManager::getInstalledAppsOnDevice(const QList<AppPackageModel> &packages) const
{
    QJsonObject report;
    for (const AppPackageModel &entry : packages) {
        if (entry.package) {
            report.insert(*entry.package,
                checkIfAppIsInstalled(*entry.package) ? QStringLiteral("1") : QStringLiteral("0"));
        }
    }
    return QString::fromUtf8(jsonText(report));
}

} // namespace parloquin
