#pragma once

#include "Parloquin/Toolkit/Holdable.h"
#include "Parloquin/Toolkit/Typeface.h"

#include <QtCore/QPointF>
#include <QtCore/QTimer>
#include <QtGui/QInputMethodEvent>
#include <QtWidgets/QLineEdit>

namespace parloquin {

/// \brief A line of text to type, without a frame of its own unless given one.
///
/// Tells edits by textEdited: the user's only, input methods, paste and selection included. Of a
/// text beyond 1024 characters only the beginning is taken. Enter tells returnPressed, once however
/// long it is held, and goes no further. A long press or a right click offers cut, copy and paste.
/// Font, colours and edges are its own, whatever style sheet, palette or style the application has.
class TextField : public QLineEdit, public Holdable {
    Q_OBJECT
public:
    explicit TextField(QWidget *parent);

    void setFontSize(int pixels, QFont::Weight weight = QFont::Normal);
    void setPlaceholderText(const QString &text);
    void setText(const QString &text); ///< in place of what is being composed, too
    /// \param width 0.5 is a hairline: one device pixel; 0 none
    void setBorder(qreal width, const QColor &color, qreal radius);
    /// Digits and dial signs on an on-screen keyboard; nothing is filtered.
    void setPhonePadKeyboard();
    /// What an on-screen keyboard writes on its return key.
    void setReturnKey(Qt::EnterKeyType key);
    /// Off: shows a text only, elided where too long; no focus, transparent for the mouse.
    void setUserInteractionEnabled(bool enabled);
    /// Whether it is just given the keyboard, or leaves it, and selects accordingly.
    [[nodiscard]] bool isChangingFocus() const { return m_changingFocus; }
    void letGo() override;
    [[nodiscard]] qreal cornerRadius() const { return m_radius; }
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    using QLineEdit::inputMethodQuery;

Q_SIGNALS:
    void beganEditing();
    void endedEditing();
    /// Backspace where there is nothing left to delete.
    void deletedBeyondStart();

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void dress();
    void followDirection();
    void restartCaret();
    /// What is typed, and what is being composed in it.
    [[nodiscard]] QString shown() const;
    [[nodiscard]] QRectF caret() const;
    [[nodiscard]] int topOf(const QFontMetrics &line) const;
    /// Typed, and drawn in the very middle.
    [[nodiscard]] bool isCentred() const;
    /// Of a character of a centred text.
    [[nodiscard]] qreal leftOf(int character) const;
    void drawCaret();
    void drawLine(const QString &text, const QColor &color);
    /// \param base where its base line begins
    void drawComposed(QPainter &painter, QPointF base) const;
    void openMenu(bool byKeys);

    Typeface m_face;
    QColor m_borderColor;
    qreal m_borderWidth = 0;
    qreal m_radius = 0;
    Qt::EnterKeyType m_returnKey = Qt::EnterKeyDefault;
    QTimer m_blink;
    QTimer m_hold { this }; // runs while a press may become a long one
    QPointF m_pressedAt;
    bool m_strayed = false;
    bool m_changingFocus = false;
    bool m_editing = false; // also while a menu, or another window, has the keyboard
    bool m_dressing = false;
    bool m_caretShown = false;
    QString m_composed; // that an input method shows and has not committed yet
    int m_caretInComposed = 0;
    QList<QInputMethodEvent::Attribute> m_composedLooks;
};

} // namespace parloquin
