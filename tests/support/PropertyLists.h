#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

// Property lists, good ones and others.

inline QByteArray xml(const QByteArray &inner)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + inner
        + "</plist>\n";
}

inline QByteArray dictionary(const QByteArray &inner) { return xml("<dict>" + inner + "</dict>"); }

/// A binary list of the objects given, the first on top; offsets and references are a byte each.
inline QByteArray binary(const QList<QByteArray> &objects)
{
    QByteArray bytes = "bplist00";
    QByteArray table;
    for (const QByteArray &object : objects) {
        table += static_cast<char>(bytes.size());
        bytes += object;
    }
    const auto start = static_cast<char>(bytes.size());
    bytes += table + QByteArray(6, '\0') + "\x01\x01" + QByteArray(7, '\0')
        + static_cast<char>(objects.size()) + QByteArray(8, '\0') + QByteArray(7, '\0') + start;
    return bytes;
}
