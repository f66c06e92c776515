#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QFont>

#include <memory>
#include <optional>
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

    /// At the largest smaller size at which it fits its place; elided at the smallest, if need be.
    ///
    /// \param lines 0: as many as the height holds, broken between words where some size allows it
    static TextBlock shrunk(
        const QString &text, const QFont &font, QSize place, int lines, int smallest);

    /// Breaks two-line texts after their first sentence where both halves fit.
    static TextBlock brokenAtSentence(const QString &text, const QFont &font, qreal width);

    /// A line cut to the width, no blank before its dots; as it is where it fits.
    [[nodiscard]] static QString elided(const QString &text, const QFont &font, qreal width);

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
    [[nodiscard]] const QTextLayout &layoutOf(std::size_t line) const;

    QFont m_font;
    std::vector<QString> m_lines;
    mutable std::vector<std::shared_ptr<QTextLayout>> m_layouts; // of lines measured or drawn
    int m_spacing = 0;
    bool m_rightToLeft = false;
    bool m_isElided = false;
};

/// \brief A text's lines as they were last asked for: what only moves is not laid out again.
class KeptTextBlock {
public:
    const TextBlock &of(const QString &text, const QFont &font, int width, int lines);
    /// \param layOut makes it for the place, in whatever way; the same for all calls
    template <class LayOut>
    const TextBlock &of(
        const QString &text, const QFont &font, QSize place, int lines, const LayOut &layOut)
    {
        if (isOther(text, font, place, lines))
            m_block.emplace(layOut());
        return *m_block;
    }

private:
    bool isOther(const QString &text, const QFont &font, QSize place, int lines);

    QString m_text;
    QFont m_font;
    QSize m_place;
    int m_lines = 0;
    std::optional<TextBlock> m_block;
};

} // namespace parloquin
