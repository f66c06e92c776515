#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Screen.h"

namespace parloquin {

NavigationItem::~NavigationItem()
{
    // Whoever adopted them shows them for this page only. Later: one may be handling its own tap.
    for (const auto &item : { m_left, m_right }) {
        if (item) {
            item->hide();
            item->deleteLater();
        }
    }
}

void NavigationItem::setTitle(const QString &title)
{
    m_title = title;
    Q_EMIT changed();
}

BarButtonItem *NavigationItem::leftBarButtonItem() const { return m_left; }

void NavigationItem::setLeftBarButtonItem(BarButtonItem *item) { replace(m_left, item); }

BarButtonItem *NavigationItem::rightBarButtonItem() const { return m_right; }

void NavigationItem::setRightBarButtonItem(BarButtonItem *item) { replace(m_right, item); }

void NavigationItem::replace(QPointer<BarButtonItem> &slot, BarButtonItem *item)
{
    if (slot == item)
        return;
    if (slot) {
        slot->hide();
        slot->deleteLater(); // it may be handling the tap that replaces it
    }
    slot = item;
    Q_EMIT changed();
}

} // namespace parloquin
