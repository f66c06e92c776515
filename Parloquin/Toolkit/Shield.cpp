#include "Parloquin/Toolkit/Shield.h"

#include <QtCore/QEvent>

namespace parloquin {

Shield::Shield(QWidget *parent)
    : Pane(parent)
{
    setAttribute(Qt::WA_AcceptTouchEvents);
}

bool Shield::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        event->accept();
        return true;
    default:
        return Pane::event(event);
    }
}

} // namespace parloquin
