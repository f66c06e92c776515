#include "Parloquin/Toolkit/EmptyLook.h"

#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QEvent>

#include <algorithm>

namespace parloquin {

namespace {

constexpr int symbolSize = 40; // px, as all here
constexpr int symbolGap = 12; // under the symbol
constexpr int plateGap = 10; // to the overlay's plate
constexpr int sideMargin = 25;
constexpr int tailRoom = 2; // for the tails of letters, between whole pixels of the device
constexpr int leastTop = 8;
constexpr int usualTop = 48;

/// What the overlay lies over while it is up.
const QWidget *containerOf(const QWidget *widget)
{
    while (widget->parentWidget()) {
        widget = widget->parentWidget();
        if (const auto *const screen = qobject_cast<const Screen *>(widget))
            return screen->navigationController()
                ? static_cast<const QWidget *>(screen->navigationController())
                : screen;
    }
    return widget;
}

} // namespace

EmptyLook::EmptyLook(QWidget *list)
    : Pane(list)
    , imgEmpty(new ImageView(this))
    , lblEmpty(new Label(this))
{
    setObjectName(QStringLiteral("emptyLook"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    imgEmpty->setObjectName(QStringLiteral("imgEmpty"));
    imgEmpty->setContentMode(ContentMode::aspectFit);
    imgEmpty->hide();
    lblEmpty->setObjectName(QStringLiteral("lblEmpty"));
    lblEmpty->setFontSize(16);
    lblEmpty->setTextColor(Style::placeholder);
    lblEmpty->setNumberOfLines(0);
    lblEmpty->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
}

bool EmptyLook::set(const QString &image, const QString &text, bool isBesidePlate)
{
    if (text == lblEmpty->text())
        return false;
    if (!text.isEmpty())
        imgEmpty->setImageNamed(image);
    lblEmpty->setText(text);
    m_isBesidePlate = isBesidePlate;
    layOut();
    return true;
}

QString EmptyLook::text() const { return lblEmpty->text(); }

bool EmptyLook::event(QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        layOut();
    return Pane::event(event);
}

// Where the plate would cover it: higher up, else its line under the plate, whose spinner is symbol
// enough.
void EmptyLook::layOut()
{
    const int lineWidth = std::max(width() - 2 * sideMargin, 0);
    const int lineHeight = lblEmpty->heightForWidth(lineWidth);
    const int whole = symbolSize + symbolGap + lineHeight;
    const QWidget *const container = containerOf(this);
    const int plate = (container->height() - Style::plateSize) / 2 - mapTo(container, QPoint()).y();
    const int above = plate - plateGap;
    const int below = plate + Style::plateSize + plateGap;

    int top = std::min(usualTop, std::max(height() - whole, 0) / 2);
    bool hasSymbol = true;
    if (m_isBesidePlate && below > usualTop && above < usualTop + whole) {
        hasSymbol = above >= leastTop + whole;
        const int high = hasSymbol ? whole : lineHeight;
        const bool isUnder = !hasSymbol && below + high <= height();
        top = isUnder || above < leastTop + high ? below : above - high;
    }
    imgEmpty->setVisible(hasSymbol && !text().isEmpty());
    imgEmpty->setGeometry((width() - symbolSize) / 2, top, symbolSize, symbolSize);
    lblEmpty->setGeometry(sideMargin, hasSymbol ? top + symbolSize + symbolGap : top, lineWidth,
        lineHeight + tailRoom);
}

} // namespace parloquin
