#include "Parloquin/Extension/ClassName.h"

#include <algorithm>

namespace parloquin {

QString nameOfClass(const QMetaObject &type)
{
    const QString name = QString::fromLatin1(type.className());
    const auto qualifier =
        std::max(name.lastIndexOf(QLatin1Char(':')), name.lastIndexOf(QLatin1Char('.')));
    return name.mid(qualifier + 1);
}

} // namespace parloquin
