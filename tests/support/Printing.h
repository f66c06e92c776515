#pragma once

#include <iosfwd>

class QByteArray;
class QColor;
class QPoint;
class QRect;
class QSize;
class QString;
class QUrl;

// How a failed expectation shows Qt's values; seen by every test before its first line, so that
// none shows bytes.
void PrintTo(const QByteArray &value, std::ostream *out);
void PrintTo(const QColor &value, std::ostream *out);
void PrintTo(const QPoint &value, std::ostream *out);
void PrintTo(const QRect &value, std::ostream *out);
void PrintTo(const QSize &value, std::ostream *out);
void PrintTo(const QString &value, std::ostream *out);
void PrintTo(const QUrl &value, std::ostream *out);
