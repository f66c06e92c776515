#pragma once

#include "Parloquin/Toolkit/Pane.h"
#include "Parloquin/Toolkit/TextBlock.h"
#include "Parloquin/Toolkit/Typeface.h"

#include <QtGui/QColor>

namespace parloquin {

/// \brief Plain text, wrapped or elided at its end; never interprets markup.
///
/// Line spacing: 16 px text -> 20, 17 -> 22, 20 -> 25. An empty label has no height.
class Label : public Pane {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
public:
    explicit Label(QWidget *parent = nullptr);

    void setText(const QString &text);
    [[nodiscard]] QString text() const { return m_text; }
    /// In the family of the application's font; 17 px and regular at first.
    void setFontSize(int pixels, QFont::Weight weight = QFont::Normal);
    void setTextColor(const QColor &color);
    [[nodiscard]] QColor textColor() const { return m_color; }
    /// Leading at first, and centred in height.
    void setAlignment(Qt::Alignment alignment);
    /// 0: as many as the text needs; else elided on the last line.
    void setNumberOfLines(int lines);
    /// \param height px, also of a label without a text; no height is set for it at first
    void setLeastHeight(int height);
    /// \param height px; a text of as many lines as it needs is elided where they would be higher,
    /// but for the first
    void setMostHeight(int height);
    /// Draws a text too wide for the label smaller instead of eliding it.
    /// \param smallest px; what does not fit at this size either is elided
    void setShrinksToFit(int smallest);
    /// As setShrinksToFit, and on as many lines as the label's height holds; broken between words
    /// where some size allows it. 0: it does not.
    void setFoldsToFit(int smallest);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {}; }

protected:
    void paintEvent(QPaintEvent *event) override;

    /// Draws the text, as it is, in this place.
    void drawText(QPainter &painter, const QRect &place);

private:
    [[nodiscard]] int linesFor(int width) const;
    [[nodiscard]] const QFont &face() const { return m_face.font(); }

    QString m_text;
    Typeface m_face;
    mutable KeptTextBlock m_drawn;
    QColor m_color;
    Qt::Alignment m_alignment = Qt::AlignLeading | Qt::AlignVCenter;
    int m_lines = 1;
    int m_leastHeight = 0; // px
    int m_mostHeight = QWIDGETSIZE_MAX; // px
    int m_smallest = 0; // px, that a text shrinks to; 0: it does not
    bool m_folds = false;
};

} // namespace parloquin
