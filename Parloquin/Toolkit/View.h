#pragma once

#include "Parloquin/Toolkit/Boxed.h"
#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QPointer>

namespace parloquin {

/// \brief A rectangle: background, border, rounded corners. Transparent for the mouse.
class View : public Boxed<Pane> {
    Q_OBJECT
public:
    explicit View(QWidget *parent = nullptr);

    /// A box with a field in it rings while that field has the focus.
    void setRingsFor(QWidget *field) { m_ringField = field; }
    [[nodiscard]] QWidget *ringField() const { return m_ringField; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPointer<QWidget> m_ringField;
};

/// \brief A line of one device pixel along the upper edge of its place.
class Hairline : public Pane {
    Q_OBJECT
public:
    Hairline(const QColor &color, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
};

} // namespace parloquin
