#include "support/Printing.h"

#include <QtCore/QDebug>
#include <QtCore/QJsonObject>
#include <QtCore/QRect>
#include <QtCore/QUrl>
#include <QtGui/QColor>
#include <QtGui/QImage>

#include <ostream>

namespace {
template <typename Value> void print(const Value &value, std::ostream &out)
{
    QString text;
    QDebug(&text).nospace() << value;
    out << text.toStdString();
}
}

void PrintTo(const QByteArray &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QColor &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QImage &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QJsonObject &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QJsonValue &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QPoint &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QRect &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QSize &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QString &value, std::ostream *out) { print(value, *out); }
void PrintTo(const QUrl &value, std::ostream *out) { print(value, *out); }
