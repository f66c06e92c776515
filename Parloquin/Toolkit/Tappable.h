#pragma once

#include "Parloquin/Toolkit/Holdable.h"
#include "Parloquin/Toolkit/PressFade.h"
#include "Parloquin/Toolkit/SheetSize.h"

#include <QtCore/QPoint>
#include <QtWidgets/QAbstractButton>

namespace parloquin {

/// \brief What everything tapped shares: the press, the keyboard and the focus that rings.
///
/// Takes focus from the keyboard only, as a tap must not close the keyboard of a field. A finger
/// that moves 10 px takes its press back. What the mouse or a finger does goes on to the parents as
/// well, which scroll, or go back a screen.
class Tappable : public QAbstractButton, public Holdable {
    Q_OBJECT
public:
    explicit Tappable(QWidget *parent = nullptr);

    /// Focused by the keyboard, and so to be seen.
    [[nodiscard]] bool hasKeyboardFocus() const { return m_keyboardFocus && hasFocus(); }
    [[nodiscard]] qreal pressStrength() const { return m_fade.strength(); } // 0..1

    void letGo() override;

    /// \param before what it was: a window that comes to the front again changes nothing
    [[nodiscard]] static bool isKeyboardReason(Qt::FocusReason reason, bool before);

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    PressFade m_fade;
    SheetSize m_sheetSize;
    QPoint m_pressedAt;
    bool m_strayed = false;
    bool m_keyboardFocus = false;
};

} // namespace parloquin
