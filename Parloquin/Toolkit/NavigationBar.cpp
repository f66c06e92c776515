#include "Parloquin/Toolkit/NavigationBar.h"

#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/Pane.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QEvent>
#include <QtCore/QVariantAnimation>
#include <QtGui/QPainter>

namespace parloquin {

namespace {

constexpr int edge = 16; // px from the bar's edge to a title where no button is

// What the bar showed before, fading over what it shows now.
class FadingLook : public Pane {
public:
    explicit FadingLook(QWidget *bar)
        : Pane(bar)
    {
        hide();
        m_animation.setStartValue(1.0);
        m_animation.setEndValue(0.0);
        connect(&m_animation, &QVariantAnimation::valueChanged, this, [this] { update(); });
        connect(&m_animation, &QVariantAnimation::finished, this, &FadingLook::finish);
    }

    void take(const QPixmap &look)
    {
        m_animation.stop();
        m_look = look;
        setGeometry(parentWidget()->rect());
        raise();
        QWidget::show();
    }

    void fade(int milliseconds)
    {
        if (milliseconds <= 0 || m_look.isNull()) {
            finish();
            return;
        }
        raise();
        m_animation.setDuration(milliseconds);
        m_animation.start();
    }

    void finish()
    {
        m_animation.stop();
        m_look = {};
        hide();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (m_animation.state() == QAbstractAnimation::Running)
            painter.setOpacity(m_animation.currentValue().toReal());
        painter.drawPixmap(0, 0, m_look);
    }

private:
    QVariantAnimation m_animation;
    QPixmap m_look;
};

}

struct NavigationBar::Private {
    explicit Private(NavigationBar *owner)
        : bar(owner)
        , title(new Label(owner))
        , look(new FadingLook(owner))
    {
        title->setObjectName(QStringLiteral("lblTitle"));
        title->setFontSize(17, QFont::Bold);
        title->setTextColor(Qt::white);
        title->setAlignment(Qt::AlignCenter);
        title->setShrinksToFit(Style::smallestText);
    }

    // Takes in the item's buttons, and its title.
    void adopt()
    {
        title->setText(item ? item->title() : QString());
        auto *const newLeft = item ? item->leftBarButtonItem() : nullptr;
        auto *const newRight = item ? item->rightBarButtonItem() : nullptr;
        for (auto *old : { left.data(), right.data() }) {
            if (old && old != newLeft && old != newRight)
                old->hide();
        }
        left = newLeft;
        right = newRight;
        for (auto *button : { newLeft, newRight }) {
            if (!button)
                continue;
            if (button->parentWidget() != bar)
                button->setParent(bar);
            button->show();
        }
        if (newLeft && newRight)
            QWidget::setTabOrder(newLeft, newRight);
        arrange();
    }

    void arrange()
    {
        const int top = bar->height() - barHeight;
        const bool mirrored = bar->layoutDirection() == Qt::RightToLeft;
        const auto place = [&](BarButtonItem *button, bool atLeft) {
            if (!button)
                return edge;
            const auto size = button->sizeHint();
            button->setGeometry({ { atLeft ? 0 : bar->width() - size.width(), top }, size });
            return size.width();
        };
        const int atLeading = place(left, !mirrored);
        const int atTrailing = place(right, mirrored);
        arrangeTitle(mirrored ? atTrailing : atLeading, mirrored ? atLeading : atTrailing, top);
        look->raise();
    }

    // In the bar's middle where it fits there; else in the middle of what the buttons leave.
    void arrangeTitle(int atLeft, int atRight, int top)
    {
        const int wider = std::max(atLeft, atRight);
        const bool fits = title->sizeHint().width() <= bar->width() - 2 * wider;
        const int x = fits ? wider : atLeft;
        const int end = bar->width() - (fits ? wider : atRight);
        title->setGeometry(x, top, std::max(end - x, 0), barHeight);
    }

    NavigationBar *bar;
    Label *title;
    FadingLook *look;
    QPointer<NavigationItem> item;
    QPointer<BarButtonItem> left;
    QPointer<BarButtonItem> right;
    QColor tint = Style::blue;
};

NavigationBar::NavigationBar(QWidget *parent)
    : Pane(parent)
    , d(std::make_unique<Private>(this))
{
}

NavigationBar::~NavigationBar() = default;

void NavigationBar::setBarTintColor(const QColor &color)
{
    d->tint = color;
    update();
}

QColor NavigationBar::barTintColor() const { return d->tint; }

void NavigationBar::setTitleColor(const QColor &color) { d->title->setTextColor(color); }

QColor NavigationBar::titleColor() const { return d->title->textColor(); }

void NavigationBar::rememberLook()
{
    if (!isVisible() || size().isEmpty())
        return;
    d->look->finish();
    d->look->take(grab());
}

void NavigationBar::show(NavigationItem *item, bool animated)
{
    if (item != d->item) {
        if (d->item)
            d->item->disconnect(this);
        d->item = item;
        if (item)
            connect(item, &NavigationItem::changed, this, [this] { d->adopt(); });
    }
    d->adopt();
    d->look->fade(animated ? Style::duration(this, Style::titleFade) : 0);
}

void NavigationBar::paintEvent(QPaintEvent *) { QPainter(this).fillRect(rect(), d->tint); }

void NavigationBar::resizeEvent(QResizeEvent *)
{
    d->look->finish();
    d->arrange();
}

void NavigationBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::FontChange)
        d->arrange();
}

} // namespace parloquin
