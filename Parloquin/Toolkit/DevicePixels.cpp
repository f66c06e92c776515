#include "Parloquin/Toolkit/DevicePixels.h"

#include <QtCore/QtMath>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <algorithm>

namespace parloquin::DevicePixels {

namespace {

/// The pixels of the device that the box covers for the most part.
QRect pixelsOf(const QPainter &painter, const QRectF &box)
{
    const QRectF exact = painter.deviceTransform().mapRect(box);
    return { QPoint(qRound(exact.left()), qRound(exact.top())),
        QPoint(qRound(exact.right()) - 1, qRound(exact.bottom()) - 1) };
}

QRectF fromPixels(const QPainter &painter, const QRectF &pixels)
{
    return painter.deviceTransform().inverted().mapRect(pixels);
}

} // namespace

void drawHairline(QPainter &painter, const QRectF &box, Qt::Edge edge, const QColor &color)
{
    QRect line = pixelsOf(painter, box);
    if (edge == Qt::TopEdge)
        line.setBottom(line.top());
    else
        line.setTop(line.bottom());
    painter.fillRect(fromPixels(painter, line), color);
}

void drawBar(QPainter &painter, const QRectF &box, const QColor &color)
{
    QRect bar = pixelsOf(painter, box);
    bar.setWidth(std::max(qFloor(box.width() * painter.deviceTransform().m11()), 1));
    painter.fillRect(fromPixels(painter, bar), color);
}

void fillBox(QPainter &painter, const QRectF &box, qreal radius, const QColor &color)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(fromPixels(painter, pixelsOf(painter, box)), radius, radius);
}

void drawFrame(QPainter &painter, const QRectF &box, qreal width, qreal radius, const QColor &color)
{
    const qreal ratio = painter.deviceTransform().m11();
    const int pixels = width < 1 ? 1 : std::max(qRound(width * ratio), 1);
    const qreal half = pixels / 2.0;
    const QRectF middle =
        fromPixels(painter, QRectF(pixelsOf(painter, box)).adjusted(half, half, -half, -half));
    const qreal line = pixels / ratio;
    const qreal round = std::max(radius - line / 2, 0.0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, line));
    painter.drawRoundedRect(middle, round, round);
}

void drawImage(QPainter &painter, const QRectF &box, const QImage &image)
{
    const QRect pixels = pixelsOf(painter, box);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::Antialiasing, false); // its edges are the device's own
    painter.drawImage(fromPixels(painter, pixels),
        image.scaled(pixels.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace parloquin::DevicePixels
