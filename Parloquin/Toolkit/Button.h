#pragma once

#include "Parloquin/Toolkit/Tappable.h"
#include "Parloquin/Toolkit/Typeface.h"

namespace parloquin {

/// \brief A button of the screens: filled and rounded, or a plain text link that may wrap.
class Button : public Tappable {
    Q_OBJECT
public:
    explicit Button(QWidget *parent = nullptr);

    void setBackgroundColor(const QColor &color); // transparent: a link
    void setTitleColor(const QColor &color);
    void setFontSize(int pixels, QFont::Weight weight);
    void setCornerRadius(qreal radius);
    /// Off where a press leads to nothing and must not look as if it did.
    void setShowsPress(bool shows);
    [[nodiscard]] qreal cornerRadius() const { return m_radius; }

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_background;
    QColor m_titleColor;
    Typeface m_face;
    qreal m_radius = 0;
    bool m_showsPress = true;
};

} // namespace parloquin
