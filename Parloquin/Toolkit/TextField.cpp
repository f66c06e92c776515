#include "Parloquin/Toolkit/TextField.h"

#include "Parloquin/Toolkit/DevicePixels.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TextBlock.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>
#include <QtGui/QStyleHints>
#include <QtGui/QTextLayout>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>

#include <algorithm>
#include <utility>

namespace parloquin {

namespace {

constexpr int caretWidth = 2; // px
constexpr int caretGap = 1; // px between a digit and the caret
constexpr int smallestFolded = 8; // px; only at twice the scale is a field so narrow
// Characters. A line edit lays all of its text out at every edit, and accents heaped on one letter
// take it a second for the 32767 of its own limit.
constexpr int mostTyped = 1024;

// px that a line edit keeps to itself beside its text, at both ends
constexpr int lineEditMargin = 2;
constexpr int longPress = 700; // ms

// px that Qt widens a cursor's rectangle by at the left, to repaint safely
constexpr int cursorSlack = 5;

// Stronger than any rule of a host's sheets is the sheet of the widget itself. -1: no size set.
QString ownSheet(const QFont &font)
{
    QStringList families = font.families();
    for (QString &family : families)
        family = QLatin1Char('"') + family.replace(QLatin1Char('"'), QLatin1String("\\\""))
            + QLatin1Char('"');
    return QStringLiteral(
               "QLineEdit { border: none; border-image: none; padding: 0; margin: 0; background: "
               "transparent;"
               "width: -1px; height: -1px; min-width: 0; min-height: 0; max-width: %1px; "
               "max-height: %1px;"
               "color: %2; selection-color: %2; selection-background-color: %3;"
               "font-size: %4px; font-weight: %5; font-style: normal; text-decoration: none;"
               "letter-spacing: 0px; word-spacing: 0px; font-family: ")
               .arg(QWIDGETSIZE_MAX)
               .arg(Style::ink.name(), Style::selection.name())
               .arg(font.pixelSize())
               .arg(font.weight())
        + families.join(QLatin1Char(',')) + QLatin1String(" }");
}

// Nothing of the desktop's frame shows, and its caret, black and thin, gives way to the field's.
// Always over the same style: the application's may change.
class FieldStyle : public QProxyStyle {
public:
    FieldStyle()
        : QProxyStyle(QStringLiteral("Fusion"))
    {
    }

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
    , m_face(17, QFont::Normal)
{
    auto *style = new FieldStyle;
    style->setParent(this);
    setStyle(style);
    setFrame(false);
    setMaxLength(mostTyped);
    setFocusPolicy(Qt::TabFocus); // what a press means is found out below
    setAttribute(Qt::WA_MacShowFocusRect, false);
    dress();

    connect(&m_blink, &QTimer::timeout, this, [this] {
        m_caretShown = !m_caretShown;
        update();
    });
    connect(this, &QLineEdit::cursorPositionChanged, this, &TextField::restartCaret);
    connect(this, &QLineEdit::textChanged, this, [this] {
        restartCaret();
        followDirection();
    });
    m_hold.setSingleShot(true);
    m_hold.setInterval(longPress);
    connect(&m_hold, &QTimer::timeout, this, [this] {
        letGo(); // lifting the finger means nothing any more
        openMenu(false);
    });
    parent->installEventFilter(this);
    followDirection();
    QInputMethodEvent none;
    TextField::inputMethodEvent(&none); // hides the cursor
}

void TextField::setFontSize(int pixels, QFont::Weight weight)
{
    m_face = Typeface(pixels, weight);
    dress();
}

// What the line edit draws by itself, and measures taps and its cursor by.
void TextField::dress()
{
    const QScopedValueRollback guard(m_dressing, true);
    setFont(m_face.font()); // for what a sheet cannot say, as how to hint
    if (const QString sheet = ownSheet(m_face.font()); sheet != styleSheet())
        setStyleSheet(sheet);
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
    if (query == Qt::ImCursorRectangle && isCentred())
        return caret();
    if (query == Qt::ImAnchorRectangle && isCentred()) {
        const int anchor = QLineEdit::inputMethodQuery(Qt::ImAnchorPosition).toInt();
        return caret().translated(leftOf(anchor) - leftOf(cursorPosition()), 0);
    }
    return QLineEdit::inputMethodQuery(query);
}

void TextField::setUserInteractionEnabled(bool enabled)
{
    setReadOnly(!enabled);
    setFocusPolicy(enabled ? Qt::TabFocus : Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents, !enabled);
    if (!enabled && hasFocus())
        parentWidget()->setFocus(Qt::OtherFocusReason); // the keys still go somewhere
}

void TextField::focusInEvent(QFocusEvent *event)
{
    {
        const QScopedValueRollback guard(m_changingFocus, true);
        QLineEdit::focusInEvent(event);
    }
    restartCaret();
    if (!std::exchange(m_editing, true))
        Q_EMIT beganEditing();
}

void TextField::focusOutEvent(QFocusEvent *event)
{
    // To an entry of its own menu the keyboard goes by Tab, which would deselect what is to be cut.
    const QWidget *const popup = QApplication::activePopupWidget();
    QFocusEvent toMenu(QEvent::FocusOut, Qt::PopupFocusReason);
    if (popup && popup->parentWidget() == this)
        event = &toMenu;
    {
        const QScopedValueRollback guard(m_changingFocus, true);
        QLineEdit::focusOutEvent(event);
    }
    m_blink.stop();
    m_caretShown = false;
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason)
        return;
    m_editing = false;
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

void TextField::setPlaceholderText(const QString &text)
{
    QLineEdit::setPlaceholderText(text);
    followDirection();
}

void TextField::setText(const QString &text)
{
    QLineEdit::setText(text);
    if (m_composed.isEmpty())
        return;
    // The line edit told its input method to begin anew; not all answer that nothing is composed.
    QInputMethodEvent none;
    TextField::inputMethodEvent(&none);
}

void TextField::paintEvent(QPaintEvent *event)
{
    if (m_borderWidth > 0 && m_borderColor.isValid()) {
        QPainter painter(this);
        DevicePixels::drawFrame(painter, rect(), m_borderWidth, m_radius, m_borderColor);
    }
    if (shown().isEmpty()) {
        drawCaret(); // under the placeholder, whose first letter it touches
        drawLine(placeholderText(), Style::placeholder);
        return;
    }
    if (isReadOnly() || isCentred()) {
        drawLine(shown(), Style::ink);
    } else {
        const QRect cursor = cursorRect();
        QLineEdit::paintEvent(event);
        // It scrolls as it paints, by where it was before, and may need two steps: a number at the
        // right of a field that is made narrower first leaves a gap before its beginning. With no
        // room at all it would go to and fro for ever.
        if (cursorRect() != cursor && width() > caretGap)
            update();
    }
    drawCaret();
}

QString TextField::shown() const { return text().insert(cursorPosition(), m_composed); }

void TextField::drawCaret()
{
    if (!m_caretShown || !hasFocus() || isReadOnly())
        return;
    QPainter painter(this);
    DevicePixels::drawBar(painter, caret(), Style::blue);
}

// Behind the last digit the caret keeps off it a little; elsewhere it parts two, in the gap they
// leave. In an empty field, whose cursor a line edit places only where it paints its text, it
// stands where the first one will: at the edge, or in the middle.
QRectF TextField::caret() const
{
    const qreal free = std::max(width() - caretWidth, 0);
    const QFontMetrics line(m_face.font());
    if (const auto all = shown(); !all.isEmpty()) {
        const int at = cursorPosition() + m_caretInComposed;
        const bool isLast = !m_composed.isEmpty() || at == all.size();
        const int off = isLast ? caretGap : -caretWidth / 2;
        const QRectF cursor = isCentred()
            ? QRectF(leftOf(at), topOf(line), 0, cursorRect().height())
            : QRectF(cursorRect()).translated(cursorSlack, 0);
        return { std::clamp(cursor.x() + off, 0.0, free), cursor.y(), caretWidth, cursor.height() };
    }
    const qreal x = alignment() & Qt::AlignRight ? free
        : alignment() & Qt::AlignHCenter         ? free / 2
                                                 : 0;
    return { x, qreal(topOf(line)), caretWidth, qreal(cursorRect().height()) };
}

int TextField::topOf(const QFontMetrics &line) const { return (height() - line.height() + 1) / 2; }

// A line edit puts a centred text up to two pixels beside the middle.
bool TextField::isCentred() const { return (alignment() & Qt::AlignHCenter) && leftOf(0) >= 0; }

qreal TextField::leftOf(int character) const
{
    const QFontMetricsF metrics(m_face.font());
    const QString all = shown();
    return (width() - metrics.horizontalAdvance(all)) / 2
        + metrics.horizontalAdvance(all, character);
}

// A line edit scrolls a long text to its end and keeps room for a caret at the right. A text that
// is only shown begins at its beginning and stands at the edge; on the line edit's base line, which
// lies between whole pixels. A placeholder shrinks, and then folds, before it is elided.
void TextField::drawLine(const QString &text, const QColor &color)
{
    QFont font = m_face.font();
    const bool isPlaceholder = shown().isEmpty();
    const bool atRight = alignment() & Qt::AlignRight;
    // Of the left edge a letter of full size keeps off by itself.
    const int off = isPlaceholder && !isReadOnly() && !isCentred() ? caretWidth : 0;
    const qreal room = width() - (atRight ? off : 0);
    const auto fits = [&] { return QFontMetricsF(font).horizontalAdvance(text) <= room; };
    while (isPlaceholder && font.pixelSize() > Style::smallestText && !fits())
        font.setPixelSize(font.pixelSize() - 1);
    QPainter painter(this);
    painter.setPen(color);
    if (isPlaceholder && !fits()) {
        const QRect beside = rect().adjusted(atRight ? 0 : off, 0, atRight ? -off : 0, 0);
        TextBlock::shrunk(text, m_face.font(), beside.size(), 0, smallestFolded)
            .draw(painter, beside, alignment());
        return;
    }
    const QFontMetrics line(font);
    const QFontMetricsF metrics(font);
    if (hasSelectedText()) {
        const qreal left = leftOf(selectionStart());
        painter.fillRect(QRectF(left, topOf(line), leftOf(selectionEnd()) - left, line.height()),
            Style::selection);
    }
    const auto fitting = TextBlock::elided(text, font, width());
    const qreal free = room - metrics.horizontalAdvance(fitting);
    const qreal x = atRight ? free : alignment() & Qt::AlignHCenter ? free / 2 : 0;
    const qreal baseLine = topOf(line) + metrics.ascent();
    painter.setFont(font);
    painter.setLayoutDirection(layoutDirection());
    if (m_composed.isEmpty())
        painter.drawText(QPointF(x, baseLine), fitting);
    else
        drawComposed(painter, QPointF(x, baseLine));
}

// With the lines and grounds that its input method gives it.
void TextField::drawComposed(QPainter &painter, QPointF base) const
{
    QList<QTextLayout::FormatRange> looks;
    for (const auto &each : m_composedLooks) {
        if (each.type == QInputMethodEvent::TextFormat)
            looks.append({ cursorPosition() + each.start, each.length,
                qvariant_cast<QTextFormat>(each.value).toCharFormat() });
    }
    QTextLayout layout(shown(), painter.font());
    layout.setFormats(looks);
    layout.beginLayout();
    const auto line = layout.createLine();
    layout.endLayout();
    layout.draw(&painter, base - QPointF(0, line.ascent()));
}

bool TextField::event(QEvent *event)
{
    const bool handled = QLineEdit::event(event);
    if (event->type() == QEvent::FontChange && !m_dressing)
        dress();
    return handled;
}

bool TextField::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::LayoutDirectionChange)
        followDirection();
    // The application's family may be another now; the field's own sheet hides that from it.
    if (watched == parentWidget() && event->type() == QEvent::FontChange)
        dress();
    return QLineEdit::eventFilter(watched, event);
}

// A line edit takes its text's direction and its text's side from one setting. Here the text has
// its own direction (a plus stays in front of its digits), and the page decides the side.
void TextField::followDirection()
{
    const bool page = parentWidget()->layoutDirection() == Qt::RightToLeft;
    const auto shown = text().isEmpty() ? placeholderText() : text();
    setLayoutDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    if (alignment() & Qt::AlignHCenter)
        return;
    setAlignment((page ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter);
    // The text is to begin at the edge; but at the right the caret would reach over it and be
    // pushed back onto the last digit.
    const int right = page && !isReadOnly() ? caretGap : 0;
    setTextMargins(-lineEditMargin, 0, right - lineEditMargin, 0);
}

} // namespace parloquin
