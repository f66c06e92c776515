#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QPointer>

namespace parloquin {

/// \brief The page of a form: fills its parent exactly, and scrolls only where it is lower than
/// the form, as under an on-screen keyboard.
///
/// Whatever takes the focus is brought into view, and with it the button that concludes the form
/// while both fit. Main thread only.
class ScrollView : public Pane {
    Q_OBJECT
public:
    /// Fills the parent from now on.
    explicit ScrollView(QWidget *parent);

    /// Parent of the form's widgets and root of its layout.
    [[nodiscard]] QWidget *contentView() const { return m_content; }

    /// \param last the lowest widget of the form, a descendant of contentView()
    /// \param margin kept under it, px
    void setLastWidget(QWidget *last, int margin);
    /// \param button kept in view beside the focused widget where there is room
    void setConcludingButton(QWidget *button) { m_button = button; }
    /// \param cover a sibling at the parent's lower end: while it is shown the page ends above it
    void setCover(QWidget *cover);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void followFinger(QMouseEvent *event);
    void setOffset(int offset);
    [[nodiscard]] int maxOffset() const;
    void fitParent();
    [[nodiscard]] int cutLine(int end) const;
    void fitContent();
    void revealFocus();
    void reveal(const QWidget *widget);

    QWidget *m_content;
    QPointer<QWidget> m_last;
    QPointer<QWidget> m_button;
    QPointer<QWidget> m_cover;
    int m_margin = 0;
    int m_least = 0; // px that the form is high
    int m_offset = 0; // px scrolled
};

} // namespace parloquin
