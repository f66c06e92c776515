#include "Parloquin/Toolkit/ActivityIndicator.h"

#include "Parloquin/Toolkit/Accessibility.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QPainter>

#include <algorithm>

namespace parloquin {

namespace {
constexpr int steps = 12;
constexpr int turn = 1000; // ms
constexpr qreal opacities[steps] = { 1, .92, .84, .76, .68, .6, .52, .45, .39, .34, .3, .27 };
constexpr qreal innerRadius = 8.5; // px
constexpr qreal outerRadius = 18; // px
constexpr qreal spokeWidth = 3.2; // px
constexpr qreal extent = 40; // px that these lengths are drawn for
}

ActivityIndicator::ActivityIndicator(QWidget *parent)
    : Pane(parent)
{
    installAccessibility();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(QCoreApplication::translate("Parloquin", "In progress"));
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % steps;
        update();
    });
}

void ActivityIndicator::startAnimating()
{
    m_step = 0;
    m_timer.start(turn / steps);
    update();
}

void ActivityIndicator::stopAnimating()
{
    m_timer.stop();
    update();
}

void ActivityIndicator::paintEvent(QPaintEvent *)
{
    if (!isAnimating())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    const qreal scale = std::min(width(), height()) / extent;
    painter.scale(scale, scale);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    for (int spoke = 0; spoke < steps; ++spoke) {
        // The brightest spoke leads, clockwise; those it has passed fade behind it.
        painter.setOpacity(opacities[(m_step - spoke + steps) % steps]);
        painter.save();
        painter.rotate(spoke * 360.0 / steps);
        painter.drawRoundedRect(
            QRectF(-spokeWidth / 2, -outerRadius, spokeWidth, outerRadius - innerRadius),
            spokeWidth / 2, spokeWidth / 2);
        painter.restore();
    }
}

} // namespace parloquin
