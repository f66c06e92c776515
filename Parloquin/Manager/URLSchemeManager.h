#pragma once

#include "Parloquin/Model/AppPackageModel.h"

#include <QtCore/QList>
#include <QtCore/QString>

namespace parloquin {

/// \brief Tells which messaging apps the device has. Main thread only; no state.
class URLSchemeManager {
public:
    /// \param urlScheme text of a URL; false where it is none
    [[nodiscard]] bool checkIfAppIsInstalled(const QString &urlScheme) const;

    /// \brief The installed-apps report: each scheme's text with "1" or "0".
    /// \return the text of a JSON object, its keys sorted; "{}" for an empty list
    [[nodiscard]] QString getInstalledAppsOnDevice(const QList<AppPackageModel> &packages) const;
};

} // namespace parloquin
