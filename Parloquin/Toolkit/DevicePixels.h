#pragma once

#include <QtCore/QRectF>
#include <QtCore/Qt>

class QColor;
class QImage;
class QPainter;

/// \brief Lines and pictures that cover whole pixels of the device, whatever its ratio, so that
/// none is blurred or of another strength than the next.
namespace parloquin::DevicePixels {

/// One device pixel along an edge of the box, inside of it.
void drawHairline(QPainter &painter, const QRectF &box, Qt::Edge edge, const QColor &color);
/// The box, but no wider than it is wherever it stands: between whole ratios its edges might round
/// to one device pixel more.
void drawBar(QPainter &painter, const QRectF &box, const QColor &color);
/// A rounded box, as large as its frame would be.
void fillBox(QPainter &painter, const QRectF &box, qreal radius, const QColor &color);
/// \brief A rounded frame inside of the box.
/// \param width px, drawn as the nearest number of device pixels; below 1 as a hairline
/// \param radius of the box, px
void drawFrame(
    QPainter &painter, const QRectF &box, qreal width, qreal radius, const QColor &color);

/// \brief A picture, scaled once to the pixels that the box covers for the most part.
///
/// The painter's own scaling skips pixels when shrinking, and softens what ends between two.
void drawImage(QPainter &painter, const QRectF &box, const QImage &image);

} // namespace parloquin::DevicePixels
