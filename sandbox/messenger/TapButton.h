#pragma once

#include "sandbox/messenger/AppLook.h"

#include <QtWidgets/QAbstractButton>

namespace messenger {

/// \brief A button that looks the same in every style of the desktop.
///
/// Solid: the app's colour with a glyph before the text. Plain: text only, for the bar.
class TapButton : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind { solid, plain };

    TapButton(Kind kind, AppLook look, const QString &text, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void paintRing(QPainter &painter) const;

    Kind m_kind;
    AppLook m_look;
    bool m_ring = false; // the keyboard brought the focus here
};

}
