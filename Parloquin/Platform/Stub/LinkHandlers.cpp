#include "Parloquin/Platform/LinkHandlers.h"

namespace parloquin {

bool LinkHandlers::handles(const QString &scheme) { return scheme == QStringLiteral("parlo"); }

// NOLINTNEXTLINE(performance-unnecessary-value-param): as every system takes it
bool LinkHandlers::launch(const QUrl &link, std::function<void(const QString &)>)
{
    return handles(link.scheme());
}

} // namespace parloquin
