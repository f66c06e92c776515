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
        const auto *top = interface;
        while (top->parent())
            top = top->parent();
        EXPECT_EQ(top->role(), QAccessible::Application) << "of no window, so it is not read";
        const bool isSaid = interface->role() == QAccessible::Notification;
        const QHash<int, QString> kinds { { QAccessible::Focus, u"focus"_s },
            { QAccessible::Alert, u"alert"_s }, { QAccessible::TableModelChanged, u"other rows"_s },
            { QAccessible::NameChanged, u"name"_s }, { QAccessible::SelectionAdd, u"selected"_s },
            { QAccessible::TextCaretMoved, u"caret"_s },
            { isSaid ? QAccessible::ObjectShow : 0, u"says"_s },
            { isSaid ? QAccessible::ObjectHide : 0, u"takes back"_s } };
        events << kinds.value(event->type(), u"0x%1"_s.arg(event->type(), 0, 16)) + u' '
                + interface->text(QAccessible::Name);
    }
};
