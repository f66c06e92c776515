#include "Parloquin/Toolkit/Announcement.h"

#include <QtGui/QAccessibleObject>
#include <QtWidgets/QWidget>

namespace parloquin {

namespace {

class AccessibleAnnouncement : public QAccessibleObject {
public:
    using QAccessibleObject::QAccessibleObject;

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Notification; }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = said()->text().isEmpty();
        return state;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? said()->text() : QString();
    }
    [[nodiscard]] QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(object()->parent());
    }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }

private:
    [[nodiscard]] const Announcement *said() const { return static_cast<Announcement *>(object()); }
};

}

Announcement::Announcement(QWidget *place)
    : QObject(place)
{
    installAccessibility();
}

// Of a notification that shows itself readers say the name, whatever they are reading.
void Announcement::say(const QString &text)
{
    m_text = text;
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

void Announcement::withdraw()
{
    if (m_text.isEmpty())
        return;
    m_text.clear();
    QAccessibleEvent hidden(this, QAccessible::ObjectHide);
    QAccessible::updateAccessibility(&hidden);
}

QAccessibleInterface *Announcement::makeAccessible() { return new AccessibleAnnouncement(this); }

} // namespace parloquin
