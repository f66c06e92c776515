#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

namespace parloquin {

/// \brief Run-time class name without what qualifies it: "CountryTableCell" for
/// `parloquin::CountryTableCell`.
[[nodiscard]] QString nameOfClass(const QMetaObject &type);

/// \brief The same for a class known at compile time; it has to bear Q_OBJECT itself.
template <class T> [[nodiscard]] QString nameOfClass() { return nameOfClass(T::staticMetaObject); }

} // namespace parloquin
