#pragma once

#include <QtCore/QUrl>

/// \brief Opens another app through the desktop's handler for a link's scheme. Main thread only.
namespace parloquin::UrlOpener {

/// \brief Strict parse of a link. \return an invalid url where the text is no url (empty included)
[[nodiscard]] QUrl parse(const QString &text);

/// \return whether an installed app handles the url's scheme; never true for `file:`
[[nodiscard]] bool canOpen(const QUrl &url);

/// \brief Hands the url to its handler as exactly one argument. Failures are logged.
///
/// Returns at once: the handler is started from a thread of its own, in the order of the calls.
void open(const QUrl &url);

} // namespace parloquin::UrlOpener
