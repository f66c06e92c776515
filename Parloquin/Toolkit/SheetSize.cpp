#include "Parloquin/Toolkit/SheetSize.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>
#include <QtGui/QResizeEvent>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <iterator>

namespace parloquin {

namespace {

// Where Qt notes that a sheet has set a size, just before it does so.
constexpr const char *marks[] = { "_q_stylesheet_minw", "_q_stylesheet_minh", "_q_stylesheet_maxw",
    "_q_stylesheet_maxh" };

} // namespace

bool SheetSize::heeds(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::DynamicPropertyChange: {
        const auto &change = static_cast<const QDynamicPropertyChangeEvent &>(event);
        return std::any_of(std::begin(marks), std::end(marks),
            [&change](const char *mark) { return change.propertyName() == mark; });
    }
    case QEvent::Polish: // the sheet has been applied
    case QEvent::StyleChange:
        return true;
    default:
        return false;
    }
}

void SheetSize::follow(QWidget &widget, const QEvent &event)
{
    if (event.type() == QEvent::DynamicPropertyChange) {
        if (!m_place)
            m_place = widget.geometry();
    } else if (m_place) {
        widget.setMinimumSize(0, 0);
        widget.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        for (const char *mark : marks)
            widget.setProperty(mark, {});
        widget.setGeometry(*m_place);
        m_place.reset();
        // Sheets reach one widget after another: what stood there may have been a place in a
        // parent that was of another size itself.
        if (event.type() == QEvent::StyleChange && widget.parentWidget()) {
            const QSize size = widget.parentWidget()->size();
            QCoreApplication::postEvent(widget.parentWidget(), new QResizeEvent(size, size));
        }
    }
}

} // namespace parloquin
