#include "SvgPicture.h"

#include <QtGui/QPainter>

namespace demo {

SvgPicture::SvgPicture(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

void SvgPicture::show(const QString &name)
{
    m_renderer.load(QStringLiteral(":/pictures/%1.svg").arg(name));
    updateGeometry();
    update();
}

void SvgPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF place(QPointF(), QSizeF(m_renderer.defaultSize()).scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(QRectF(rect()).center());
    m_renderer.render(&painter, place);
}

} // namespace demo
