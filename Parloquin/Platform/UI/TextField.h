#pragma once

#include <QtWidgets/QLineEdit>

namespace parloquin {

/// \brief A line of text to type, without a frame of its own unless given one.
///
/// Tells edits by textEdited: the user's only, input methods, paste and selection included.
class TextField : public QLineEdit {
    Q_OBJECT
public:
    explicit TextField(QWidget *parent = nullptr);

    void setFontSize(int pixels, QFont::Weight weight = QFont::Normal);
    void setTextColor(const QColor &color);
    /// \param width 0.5 is a hairline: one device pixel; 0 none
    void setBorder(qreal width, const QColor &color, qreal radius);
    /// Digits and dial signs on an on-screen keyboard; nothing is filtered.
    void setPhonePadKeyboard();
    /// Off: shows a text only; no focus, transparent for the mouse.
    void setUserInteractionEnabled(bool enabled);

Q_SIGNALS:
    void beganEditing();
    void endedEditing();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_borderColor;
    qreal m_borderWidth = 0;
    qreal m_radius = 0;
};

} // namespace parloquin
