#pragma once

#include "support/Widgets.h"

#include <QtGui/QAccessible>

/// \brief What readers hear while this lives: "focus Aa land, +00". One at a time.
class Heard {
public:
    Heard()
    {
        EXPECT_TRUE(QTest::qWaitFor([] { return QAccessible::isActive(); })) << "no bus";
        events.clear();
        QAccessible::installUpdateHandler(hear);
    }
    ~Heard() { QAccessible::installUpdateHandler(nullptr); }
    Q_DISABLE_COPY_MOVE(Heard)

    inline static QStringList events;

private:
    static void hear(QAccessibleEvent *event)
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
        events.append(kind + interface->text(QAccessible::Name));
    }
};
