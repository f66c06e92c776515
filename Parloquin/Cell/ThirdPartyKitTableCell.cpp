#include "Parloquin/Cell/ThirdPartyKitTableCell.h"

#include "Parloquin/Extension/ClassName.h"
#include "Parloquin/Extension/QColor+Extension.h"
#include "Parloquin/Extension/QImage+Extension.h"
#include "Parloquin/Model/ThirdPartyKitModel.h"
#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Parloquin/Platform/UrlOpener.h"
#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/FocusRing.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/View.h"

#include <QtGui/QPainter>

namespace parloquin {
namespace {

constexpr qreal pressDepth = 0.2; // as the tint over what else is coloured
constexpr int tooDark = 0x40; // of the brightest channel: what is darker shows no darkening
constexpr int tooPale = 0xe6; // as grey: what is paler hardly differs from the page

} // namespace

ThirdPartyKitTableCell::ThirdPartyKitTableCell(QWidget *parent)
    : TableCell(parent)
    , viewBack(new View(this))
    , imgKitIcon(new ImageView(viewBack))
    , lblKitName(new Label(viewBack))
{
    setObjectName(nameOfClass<ThirdPartyKitTableCell>());
    viewBack->setObjectName(QStringLiteral("viewBack"));
    viewBack->setCornerRadius(Style::cornerRadius);
    imgKitIcon->setObjectName(QStringLiteral("imgKitIcon"));
    imgKitIcon->setContentMode(ContentMode::aspectFit);
    lblKitName->setObjectName(QStringLiteral("lblKitName"));
    lblKitName->setTextColor(Qt::white);
    lblKitName->setFontSize(20, QFont::Medium);
    lblKitName->setFoldsToFit(Style::smallestText); // all begin alike: the end tells which app
    lblKitName->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    setAnchors();
}

void ThirdPartyKitTableCell::setAnchors()
{
    using parloquin::height; // not the cell's own
    using parloquin::width;
    // clang-format off
    parloquin::activate(this, {
        leading(viewBack)    == leading(this) + 20,
        trailing(viewBack)   == trailing(this) - 20,
        height(viewBack)     == 60,
        centerY(viewBack)    == centerY(this),

        leading(imgKitIcon)  == leading(viewBack) + 20,
        width(imgKitIcon)    == 25,
        height(imgKitIcon)   == 25,
        centerY(imgKitIcon)  == centerY(viewBack),

        leading(lblKitName)  == trailing(imgKitIcon) + 20,
        trailing(lblKitName) == trailing(viewBack) - 20,
        top(lblKitName)      == top(viewBack) + 10,
        bottom(lblKitName)   == bottom(viewBack) - 10,
    });
    // clang-format on
}

void ThirdPartyKitTableCell::configure(const ThirdPartyKitModel &kit)
{
    m_color = colorFromHexString(kit.bgColour.value_or(QStringLiteral("0000ff")));
    showBackground();
    viewBack->setBorder(qGray(m_color.rgb()) > tooPale ? 0.5 : 0, Style::grey);
    lblKitName->setTextColor(colorFromHexString(kit.textColour.value_or(QStringLiteral("ffffff"))));
    lblKitName->setText(kit.text.value_or(QString()));

    // Another app's icon must not stand beside this app's name while its own is on the way.
    const QString icon = kit.icon.value_or(QString());
    if (icon != m_icon)
        imgKitIcon->setImage({});
    m_icon = icon;
    if (const QUrl url = UrlOpener::parse(icon); url.isValid())
        download(imgKitIcon, url, ContentMode::aspectFit, serviceTimeout());
}

void ThirdPartyKitTableCell::stateChanged()
{
    showBackground();
    update();
}

void ThirdPartyKitTableCell::showBackground()
{
    const qreal press = pressDepth * pressStrength();
    const int other = m_color.value() < tooDark ? 0xff : 0;
    const auto mixed = [=](int channel) { return qRound(channel + (other - channel) * press); };
    const QColor color(
        mixed(m_color.red()), mixed(m_color.green()), mixed(m_color.blue()), m_color.alpha());
    if (viewBack->backgroundColor() != color)
        viewBack->setBackgroundColor(color);
}

void ThirdPartyKitTableCell::paintEvent(QPaintEvent *event)
{
    showBackground(); // each step of a press that fades is a repaint, no change of state
    TableCell::paintEvent(event);
    if (!hasKeyboardFocus())
        return;
    QPainter painter(this);
    FocusRing::paint(painter, viewBack->geometry(), Style::cornerRadius, false, Style::blue);
}

} // namespace parloquin
