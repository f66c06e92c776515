#include "Parloquin/Platform/InfoDictionary.h"

namespace parloquin {

std::optional<QString> infoDictionaryText(const QString &key)
{
    if (key == QStringLiteral("ParloquinKey"))
        return QStringLiteral("stub");
    if (key == QStringLiteral("ParloquinSecret"))
        return QStringLiteral("00").repeated(32);
    return std::nullopt;
}

} // namespace parloquin
