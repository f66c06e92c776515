#include "Parloquin/Toolkit/ImageView.h"

#include "Parloquin/Platform/Fatal.h"
#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/DevicePixels.h"

#include <QtCore/QFile>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

namespace parloquin {

ImageView::ImageView(QWidget *parent)
    : Pane(parent)
{
    installAccessibility();
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

ImageView::~ImageView() = default;

void ImageView::setImageNamed(const QString &name, bool mirrored)
{
    m_image = {};
    m_mirrored = mirrored;
    m_renderer.reset();
    m_file = QStringLiteral(":/parloquin/%1.svg").arg(name);
    if (!QFile::exists(m_file))
        fatal(QStringLiteral("the kit has no image \"%1\"; add it to Parloquin.qrc").arg(name));
    update();
}

void ImageView::setImage(const QImage &image)
{
    m_renderer.reset();
    m_file.clear();
    m_mirrored = false;
    m_image = image;
    update();
}

void ImageView::setContentMode(ContentMode mode)
{
    m_mode = mode;
    update();
}

void ImageView::paintEvent(QPaintEvent *)
{
    if (!m_renderer && !m_file.isEmpty())
        m_renderer = std::make_unique<QSvgRenderer>(m_file);
    const QSizeF natural = m_renderer ? m_renderer->viewBoxF().size() : QSizeF(m_image.size());
    if (natural.isEmpty())
        return;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF target(rect());
    if (m_mode == ContentMode::aspectFit) {
        const auto fitted = natural.scaled(target.size(), Qt::KeepAspectRatio);
        target = { { (target.width() - fitted.width()) / 2,
                       (target.height() - fitted.height()) / 2 },
            fitted };
    }
    if (m_mirrored && layoutDirection() == Qt::RightToLeft) {
        painter.translate(width(), 0);
        painter.scale(-1, 1);
    }
    if (m_renderer) {
        m_renderer->render(&painter, target);
        return;
    }
    DevicePixels::drawImage(painter, target, m_image);
}

} // namespace parloquin
