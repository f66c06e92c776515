#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtGui/QImage>

#include <memory>

class QSvgRenderer;

namespace parloquin {

enum class ContentMode { scaleToFill, aspectFit };

/// \brief Shows a picture, sharp at any scale when it is one of the kit's own.
///
/// Decoration to a screen reader; transparent for the mouse.
class ImageView : public Pane {
    Q_OBJECT
public:
    explicit ImageView(QWidget *parent = nullptr);
    ~ImageView() override;

    /// \param name one of the kit's SVG images, as "icon-sms"; an unknown name stops the program
    /// \param mirrored turned with the layout direction (chevrons)
    void setImageNamed(const QString &name, bool mirrored = false);
    void setImage(const QImage &image);
    [[nodiscard]] QImage image() const { return m_image; }

    void setContentMode(ContentMode mode);
    [[nodiscard]] ContentMode contentMode() const { return m_mode; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_image;
    QString m_file; // of the kit's own picture
    std::unique_ptr<QSvgRenderer> m_renderer; // made when first drawn: most ticks are never seen
    ContentMode m_mode = ContentMode::scaleToFill;
    bool m_mirrored = false;
};

} // namespace parloquin
