#pragma once

#include <ostream>
#include <type_traits>

class QByteArray;
class QColor;
class QImage;
class QJsonObject;
class QJsonValue;
class QPoint;
class QRect;
class QSize;
class QString;
class QUrl;

// How a failed expectation shows Qt's values; seen by every test before its first line, so that
// none shows bytes.
void PrintTo(const QByteArray &value, std::ostream *out);
void PrintTo(const QColor &value, std::ostream *out);
void PrintTo(const QImage &value, std::ostream *out);
void PrintTo(const QJsonObject &value, std::ostream *out);
void PrintTo(const QJsonValue &value, std::ostream *out);
void PrintTo(const QPoint &value, std::ostream *out);
void PrintTo(const QRect &value, std::ostream *out);
void PrintTo(const QSize &value, std::ostream *out);
void PrintTo(const QString &value, std::ostream *out);
void PrintTo(const QUrl &value, std::ostream *out);

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
