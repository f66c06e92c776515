#include "Parloquin/Toolkit/TextField.h"

#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>
#include <QtGui/QStyleHints>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>

#include <algorithm>

namespace parloquin {

namespace {

constexpr int caretWidth = 2; // px
// Characters. A line edit lays all of its text out at every edit, and accents heaped on one letter
// take it a second for the 32767 of its own limit.
constexpr int mostTyped = 1024;

// Nothing of the desktop's frame shows, and its caret, black and thin, gives way to the field's.
class FieldStyle : public QProxyStyle {
public:
    int pixelMetric(
        PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override
    {
        if (metric == PM_TextCursorWidth || metric == PM_DefaultFrameWidth)
            return 0;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override
    {
        if (element != PE_PanelLineEdit && element != PE_FrameLineEdit
            && element != PE_FrameFocusRect)
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
};

}

TextField::TextField(QWidget *parent)
    : QLineEdit(parent)
{
    auto *style = new FieldStyle;
    style->setParent(this);
    setStyle(style);
    setFrame(false);
    setMaxLength(mostTyped);
    // The line edit keeps 2 px to itself; the text is to begin at the edge.
    setTextMargins(-2, 0, -2, 0);
    setFocusPolicy(Qt::TabFocus); // what a press means is found out below
    setAttribute(Qt::WA_MacShowFocusRect, false);

    auto colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::PlaceholderText, Style::placeholder);
    colors.setColor(QPalette::Highlight, QColor(0xe4, 0xe6, 0xff));
    colors.setColor(QPalette::HighlightedText, Style::ink);
    setPalette(colors);
    setTextColor(Style::ink);
    setFontSize(17);

    connect(&m_blink, &QTimer::timeout, this, [this] {
        m_caretShown = !m_caretShown;
        update();
    });
    connect(this, &QLineEdit::cursorPositionChanged, this, &TextField::restartCaret);
    connect(this, &QLineEdit::textChanged, this, [this] {
        restartCaret();
        followDirection();
    });
    watchParent();
}

void TextField::setFontSize(int pixels, QFont::Weight weight)
{
    setFont(Style::font(pixels, weight));
}

void TextField::setTextColor(const QColor &color)
{
    auto colors = palette();
    colors.setColor(QPalette::Text, color);
    setPalette(colors);
}

void TextField::setBorder(qreal width, const QColor &color, qreal radius)
{
    m_borderWidth = width;
    m_borderColor = color;
    m_radius = radius;
    update();
}

void TextField::setPhonePadKeyboard()
{
    setInputMethodHints(Qt::ImhDialableCharactersOnly | Qt::ImhNoPredictiveText);
}

void TextField::setReturnKey(Qt::EnterKeyType key) { m_returnKey = key; }

QVariant TextField::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImEnterKeyType)
        return m_returnKey;
    return QLineEdit::inputMethodQuery(query);
}

void TextField::setUserInteractionEnabled(bool enabled)
{
    setReadOnly(!enabled);
    setFocusPolicy(enabled ? Qt::TabFocus : Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents, !enabled);
    if (!enabled && hasFocus() && parentWidget())
        parentWidget()->setFocus(Qt::OtherFocusReason); // the keys still go somewhere
}

void TextField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    restartCaret();
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        Q_EMIT beganEditing();
}

void TextField::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    m_blink.stop();
    m_caretShown = false;
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        Q_EMIT endedEditing();
}

void TextField::restartCaret()
{
    if (!hasFocus() || isReadOnly())
        return;
    m_caretShown = true;
    const int flash = QGuiApplication::styleHints()->cursorFlashTime();
    if (flash > 1)
        m_blink.start(flash / 2);
    else
        m_blink.stop(); // the user wants a caret that stands still
    update();
}

void TextField::paintEvent(QPaintEvent *event)
{
    if (m_borderWidth > 0 && m_borderColor.isValid()) {
        const qreal line = m_borderWidth < 1 ? Style::hairlineWidth(this) : m_borderWidth;
        const qreal round = std::max<qreal>(m_radius - line / 2, 0);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(m_borderColor, line));
        painter.drawRoundedRect(
            QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2), round, round);
    }
    if (isReadOnly() && !text().isEmpty()) {
        drawShownText();
        return;
    }
    QLineEdit::paintEvent(event);
    if (m_caretShown && hasFocus() && !isReadOnly()) {
        const auto caret = cursorRect();
        // Qt widens the rectangle by 5 px at the left to repaint safely. Beside a digit the caret
        // keeps 1 px off it; alone in a centred box it stands in the middle.
        const int place = caret.x() + 5 + (text().isEmpty() ? -caretWidth / 2 : 1);
        const int x = std::clamp(place, 0, std::max(width() - caretWidth, 0));
        QPainter(this).fillRect(QRect(x, caret.y(), caretWidth, caret.height()), Style::blue);
    }
}

// A line edit scrolls a long text to its end and keeps room for a caret at the right. A text that
// is only shown begins at its beginning and stands at the edge; on the base line of its neighbours.
void TextField::drawShownText()
{
    const QFontMetrics line(font());
    const QFontMetricsF metrics(font());
    const auto shown = metrics.elidedText(text(), Qt::ElideRight, width());
    const qreal free = width() - metrics.horizontalAdvance(shown);
    const qreal x = alignment() & Qt::AlignRight ? free
        : alignment() & Qt::AlignHCenter         ? free / 2
                                                 : 0;
    const int top = (height() - line.height() + 1) / 2;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    painter.setLayoutDirection(layoutDirection());
    painter.drawText(QPointF(x, top + line.ascent()), shown);
}

bool TextField::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride
        && Keys::isEnter(*static_cast<QKeyEvent *>(event))) {
        event->accept(); // not a shortcut of the host's
        return true;
    }
    const bool handled = QLineEdit::event(event);
    if (event->type() == QEvent::ParentChange)
        watchParent();
    return handled;
}

bool TextField::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_watchedParent && event->type() == QEvent::LayoutDirectionChange)
        followDirection();
    return QLineEdit::eventFilter(watched, event);
}

void TextField::watchParent()
{
    if (m_watchedParent)
        m_watchedParent->removeEventFilter(this);
    m_watchedParent = parentWidget();
    if (m_watchedParent)
        m_watchedParent->installEventFilter(this);
    followDirection();
}

// A line edit takes its text's direction and its text's side from one setting. Here the text has
// its own direction (a plus stays in front of its digits), and the page decides the side.
void TextField::followDirection()
{
    const bool page = m_watchedParent ? m_watchedParent->layoutDirection() == Qt::RightToLeft
                                      : QGuiApplication::isRightToLeft();
    const auto shown = text().isEmpty() ? placeholderText() : text();
    setLayoutDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    if (!(alignment() & Qt::AlignHCenter)) {
        setAlignment(
            (page ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter);
    }
}

} // namespace parloquin
