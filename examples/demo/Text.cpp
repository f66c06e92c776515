#include "Text.h"

#include <QtGui/QPainter>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>

namespace demo {

Text::Text(const TextStyle &style, QWidget *parent)
    : QWidget(parent)
    , m_style(style)
{
    QFont wanted = font();
    wanted.setPixelSize(style.pixels);
    wanted.setWeight(style.weight);
    wanted.setLetterSpacing(QFont::AbsoluteSpacing, style.spacing);
    setFont(wanted);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Text::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void Text::setTrailing(bool trailing)
{
    m_trailing = trailing;
    update();
}

QSize Text::sizeHint() const
{
    QTextLayout layout;
    const int height = lay(layout, QWIDGETSIZE_MAX);
    return { int(std::ceil(layout.maximumWidth())), height };
}

QSize Text::minimumSizeHint() const { return { 0, m_text.isEmpty() ? 0 : m_style.lineHeight }; }

int Text::heightForWidth(int width) const
{
    QTextLayout layout;
    return lay(layout, width);
}

int Text::lay(QTextLayout &layout, int width) const
{
    QString text = m_text;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    layout.setText(text);
    layout.setFont(font());

    // The edge follows the page, the reading direction the text: an English sentence on a
    // right-to-left page stands at the right and still ends in its full stop.
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    QTextOption option;
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setAlignment(m_style.centred ? Qt::AlignHCenter
            : rightToLeft != m_trailing ? Qt::AlignRight | Qt::AlignAbsolute
                                        : Qt::AlignLeft | Qt::AlignAbsolute);
    layout.setTextOption(option);

    int lines = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(width, 1));
        const qreal spare = m_style.lineHeight - (line.ascent() + line.descent());
        line.setPosition({ 0, lines * m_style.lineHeight + spare / 2 });
        ++lines;
    }
    layout.endLayout();
    return m_text.isEmpty() ? 0 : lines * m_style.lineHeight;
}

void Text::paintEvent(QPaintEvent *)
{
    if (m_text.isEmpty())
        return;
    QPainter painter(this);
    painter.setPen(m_style.color);
    QTextLayout layout;
    const int height = lay(layout, width());
    layout.draw(&painter, QPointF(0, (this->height() - height) / 2.0));
}

} // namespace demo
