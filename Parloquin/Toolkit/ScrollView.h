#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QScrollArea>

namespace parloquin {

/// \brief The page of a form: fills its parent exactly, and scrolls only where the parent is lower
/// than the form, as under an on-screen keyboard.
///
/// Whatever takes the focus is brought into view, and with it the button that concludes the form
/// while both fit. Main thread only.
class ScrollView : public QScrollArea {
    Q_OBJECT
public:
    /// Fills the parent from now on.
    explicit ScrollView(QWidget *parent);

    /// Parent of the form's widgets and root of its layout.
    [[nodiscard]] QWidget *contentView() const { return widget(); }

    /// \param last the lowest widget of the form, a descendant of contentView()
    /// \param margin kept under it, px
    void setLastWidget(QWidget *last, int margin);
    /// \param button kept in view beside the focused widget where there is room
    void setConcludingButton(QWidget *button) { m_button = button; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void followFinger(QMouseEvent *event);
    void fitContent();
    void revealFocus();
    void reveal(const QWidget *widget);

    QPointer<QWidget> m_last;
    QPointer<QWidget> m_button;
    int m_margin = 0;
};

} // namespace parloquin
