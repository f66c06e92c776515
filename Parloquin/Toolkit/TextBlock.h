#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtGui/QFont>

#include <memory>
#include <vector>

class QPainter;
class QTextLayout;

namespace parloquin {

/// \brief A text set into lines of a width: wrapped at words, elided at the end of the last one.
///
/// The text itself decides its direction, the caller its side: an English sentence on a page from
/// right to left stands at the right, and its question mark still ends it.
class TextBlock {
public:
    /// \param lines how many at most; 0: as many as the text needs
    TextBlock(const QString &text, const QFont &font, qreal width, int lines);

    /// Breaks two-line texts after their first sentence where both halves fit.
    static TextBlock brokenAtSentence(const QString &text, const QFont &font, qreal width);

    [[nodiscard]] int height() const;
    [[nodiscard]] qreal naturalWidth() const;
    [[nodiscard]] const std::vector<QString> &lines() const { return m_lines; }
    /// True when the text needs more room than its lines have.
    [[nodiscard]] bool isElided() const { return m_isElided; }
    /// \param alignment absolute: left and right are meant as they stand
    void draw(QPainter &painter, const QRectF &rect, Qt::Alignment alignment) const;

private:
    /// The layout of a line as it is measured and drawn: alone, and never wrapped.
    [[nodiscard]] std::shared_ptr<QTextLayout> layOut(const QString &line) const;
    [[nodiscard]] std::shared_ptr<QTextLayout> layoutOf(const QString &line) const;

    QFont m_font;
    std::vector<QString> m_lines;
    std::shared_ptr<QTextLayout> m_whole; // of the only line, when it has been laid out already
    int m_spacing = 0;
    bool m_rightToLeft = false;
    bool m_isElided = false;
};

} // namespace parloquin
