#pragma once

#include <QtGui/QColor>

class QPainter;
class QRect;

namespace parloquin {

/// \brief How a box looks: ground, frame, corners.
struct BoxLook {
    QColor ground;
    QColor frame;
    qreal frameWidth = 0; // px
    qreal radius = 0; // px

    void paintGround(QPainter &painter, const QRect &box, const QColor &color) const;
    void paintFrame(QPainter &painter, const QRect &box) const;
};

/// \brief Gives a widget the look of a box.
template <class Widget> class Boxed : public Widget {
public:
    using Widget::Widget;

    void setBackgroundColor(const QColor &color) // none at first
    {
        m_look.ground = color;
        this->update();
    }
    [[nodiscard]] QColor backgroundColor() const { return m_look.ground; }

    /// \param width px; below 1 a hairline: one device pixel
    void setBorder(qreal width, const QColor &color)
    {
        m_look.frameWidth = width;
        m_look.frame = color;
        this->update();
    }

    void setCornerRadius(qreal radius)
    {
        m_look.radius = radius;
        this->update();
    }
    [[nodiscard]] qreal cornerRadius() const { return m_look.radius; }

protected:
    [[nodiscard]] const BoxLook &look() const { return m_look; }

private:
    BoxLook m_look;
};

} // namespace parloquin
