#pragma once

#include "Parloquin/Toolkit/Tappable.h"

#include <QtCore/QPointer>
#include <QtGui/QColor>

namespace parloquin {

/// \brief A rectangle: background, border, rounded corners; takes taps when asked to.
///
/// A tappable view shows the pressed tint, takes keyboard focus with a ring, and is a button to a
/// screen reader; the accessible name is then its to set.
class View : public Tappable {
    Q_OBJECT
public:
    explicit View(QWidget *parent = nullptr);

    void setBackgroundColor(const QColor &color); // none at first
    [[nodiscard]] QColor backgroundColor() const { return m_background; }
    /// \param width 0.5 is a hairline: one device pixel
    void setBorder(qreal width, const QColor &color);
    void setCornerRadius(qreal radius);

    /// Off at first: the view is then transparent for the mouse. Taps emit clicked().
    void setTappable(bool tappable);
    /// The colour laid over the background while pressed.
    void setPressedColor(const QColor &color);
    /// Rings outside (the default, for boxes) or inside the edge (full-width rows and panels).
    void setRingInside(bool inside);
    /// A box with a field in it rings while that field has the focus.
    void setRingsFor(QWidget *field);

    [[nodiscard]] bool isTappable() const { return m_tappable; }
    [[nodiscard]] qreal cornerRadius() const { return m_radius; }
    [[nodiscard]] bool ringsInside() const { return m_ringInside; }
    [[nodiscard]] QWidget *ringField() const { return m_ringField; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_background;
    QColor m_borderColor;
    QColor m_pressed;
    qreal m_borderWidth = 0;
    qreal m_radius = 0;
    QPointer<QWidget> m_ringField;
    bool m_tappable = false;
    bool m_ringInside = false;
};

} // namespace parloquin
