#pragma once

#include "support/Widgets.h"

#include <QtGui/QAccessible>

/// What readers hear while `hear` is installed: "focus Aa land, +00".
inline QStringList *heard = nullptr;

inline void hear(QAccessibleEvent *event)
{
    const auto *interface = event->accessibleInterface();
    if (!interface || !interface->isValid())
        return;
    const bool shown = event->type() == QAccessible::ObjectShow;
    const QString kind = event->type() == QAccessible::Focus ? u"focus "_s
        : event->type() == QAccessible::TableModelChanged    ? u"rows "_s
        : event->type() == QAccessible::TextCaretMoved       ? u"caret "_s
        : shown && interface->role() == QAccessible::Notification
        ? u"says "_s
        : u"0x%1 "_s.arg(event->type(), 0, 16);
    heard->append(kind + interface->text(QAccessible::Name));
}
