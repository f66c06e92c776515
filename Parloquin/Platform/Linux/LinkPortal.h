#pragma once

#include <QtCore/QString>

/// \brief The desktop's handlers of links, asked by an app that is confined and cannot see them.
namespace parloquin::LinkPortal {

/// \return whether this app is confined as a Flatpak is: what it sees of apps are its own files
[[nodiscard]] bool isNeeded();

/// \brief Asks the desktop whether an app of its takes links of the scheme. Main thread only.
///
/// \return false too where the desktop's portal is too old to say so, or nobody answers in time
[[nodiscard]] bool handles(const QString &scheme);

} // namespace parloquin::LinkPortal
