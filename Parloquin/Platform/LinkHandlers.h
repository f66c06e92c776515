#pragma once

#include <QtCore/QUrl>

#include <functional>

/// \brief The apps that open links, as the system knows them.
///
/// Main thread only. UrlOpener alone asks: what it hands on is a link that may be opened, and no
/// system has to judge that again.
namespace parloquin::LinkHandlers {

/// \return whether an installed app takes links of the scheme, given in small letters
[[nodiscard]] bool handles(const QString &scheme);

/// \brief Hands the link to its app as exactly one argument.
///
/// Returns at once: the app is started from a thread of its own, in the order of the calls.
/// \param report says why the app could not be started; runs at most once, on any thread
/// \return false where no app takes such links; nothing is reported then
[[nodiscard]] bool launch(const QUrl &link, std::function<void(const QString &fault)> report);

} // namespace parloquin::LinkHandlers
