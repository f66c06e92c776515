#pragma once

#include <QtWidgets/QLabel>

namespace parloquin {

/// \brief Plain text, wrapped or elided at its end; never interprets markup.
///
/// Line spacing: 16 px text -> 20, 17 -> 22, 20 -> 25. An empty label has no height.
class Label : public QLabel {
    Q_OBJECT
public:
    explicit Label(QWidget *parent = nullptr);

    /// The application's font at this size (px) and weight.
    void setFontSize(int pixels, QFont::Weight weight = QFont::Normal);
    void setTextColor(const QColor &color);
    [[nodiscard]] QColor textColor() const { return m_color; }
    /// 0: as many as the text needs; else elided on the last line.
    void setNumberOfLines(int lines);
    /// Draws a text too wide for the label smaller instead of eliding it.
    void setShrinksToFit(bool shrinks);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color;
    int m_lines = 1;
    bool m_shrinks = false;
};

} // namespace parloquin
