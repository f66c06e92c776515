#pragma once

#include <QtCore/QUrl>

#include <functional>

/// \brief Opens another app through the desktop's handler for a link's scheme. Main thread only.
namespace parloquin::UrlOpener {

/// \brief Strict parse of a link. \return an invalid url where the text is no url (empty included)
[[nodiscard]] QUrl parse(const QString &text);

/// \return whether an installed app handles the url's scheme; never true for `file:`
[[nodiscard]] bool canOpen(const QUrl &url);

/// Says why an app could not be opened, and how to mend it.
using Report = std::function<void(const QString &fault)>;

/// \brief Hands the url to its handler as exactly one argument.
///
/// Returns at once: the handler is started from a thread of its own, in the order of the calls.
/// \param report runs at most once, only where the app could not be opened; on any thread
void open(const QUrl &url, const Report &report);

} // namespace parloquin::UrlOpener
