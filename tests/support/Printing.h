#pragma once

#include <QtCore/QDebug>

#include <ostream>
#include <type_traits>

// How a failed expectation shows Qt's values; seen by every test before its first line, so that
// none shows bytes.
template <typename Value>
requires std::is_class_v<Value> && requires(QDebug out, const Value &value) { out << value; }
void PrintTo(const Value &value, std::ostream *out)
{
    QString text;
    QDebug(&text).nospace() << value;
    *out << text.toStdString();
}

/// The kit's enumerations, by the place of their case.
template <typename Value>
requires std::is_enum_v<Value>
void PrintTo(const Value &value, std::ostream *out)
{
    *out << "case " << +std::underlying_type_t<Value>(value);
}
namespace parloquin {
using ::PrintTo;
}
