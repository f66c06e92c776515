#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QPointer>
#include <QtGui/QColor>

class QPainter;

namespace parloquin {

/// \brief The ring around whatever has the focus on a screen, over everything else there.
///
/// Boxes clip what they hold, so a field cannot draw its own ring; the screen's overlay can.
/// Fields ring on any focus, everything else on keyboard focus only. Rows draw their own.
class FocusRing : public Pane {
    Q_OBJECT
public:
    explicit FocusRing(QWidget *screen);

    /// \brief Draws a ring around rect (2 px, 2 px off), or 2 px inside of it.
    /// \param radius corner radius of rect, px
    static void paint(
        QPainter &painter, const QRectF &rect, qreal radius, bool inside, const QColor &color);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void follow(QWidget *focused);
    void place();

    QWidget *m_screen;
    QPointer<QWidget> m_focused; // on the screen
    QPointer<QWidget> m_target; // what rings for it
    qreal m_radius = 0;
    bool m_inside = false;
};

} // namespace parloquin
