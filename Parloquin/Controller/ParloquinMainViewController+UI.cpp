#include "Parloquin/Controller/ParloquinMainViewController.h"

#include "Parloquin/Cell/ThirdPartyKitTableCell.h"
#include "Parloquin/Extension/ClassName.h"
#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TappableView.h"
#include "Parloquin/Toolkit/View.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QResizeEvent>

namespace parloquin {
namespace {

constexpr int kitRowHeight = 80; // px, as all here
constexpr int descriptionMargin = 30; // over and under it
constexpr int panelHeight = 105;
constexpr int panelTitleHeight = 20; // of one line
constexpr int panelTitleRoom = 35; // down to what stands under it
constexpr int smallestPanelTitle = 9; // px; only at twice the scale is it below the usual one

} // namespace

void ParloquinMainViewController::setUI()
{
    setDescriptionLabel();
    setKitsTable();
    setAlternativePanel();
    setTableBinding();
    setAnchorsForDescriptionLabel();
    setAnchorsForKitsTable();
    setAnchorsForAlternativePanel();
}

void ParloquinMainViewController::setCloseButton()
{
    btnClose = new BarButtonItem(
        QCoreApplication::translate("Parloquin", "Close"), QStringLiteral("btnClose"));
    connect(btnClose, &QAbstractButton::clicked, this,
        &ParloquinMainViewController::actionTapCloseButton);
    navigationItem().setRightBarButtonItem(btnClose);
}

void ParloquinMainViewController::setDescriptionLabel()
{
    lblDescription = new Label(this);
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->setFontSize(16);
    lblDescription->setTextColor(Style::ink);
    lblDescription->setNumberOfLines(0);
    lblDescription->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
}

void ParloquinMainViewController::setKitsTable()
{
    tblKits = new TableView(this);
    tblKits->setObjectName(QStringLiteral("tblKits"));
    tblKits->setAccessibleName(QCoreApplication::translate("Parloquin", "Messaging apps"));
    tblKits->setRowHeight(kitRowHeight);
    tblKits->setSeparatorStyle(TableView::SeparatorStyle::none);
}

void ParloquinMainViewController::setAlternativePanel()
{
    viewAlternativeKit = new TappableView(this);
    viewAlternativeKit->setObjectName(QStringLiteral("viewAlternativeKit"));
    viewAlternativeKit->setBackgroundColor(Qt::white);
    viewAlternativeKit->setRingInside(true);
    viewAlternativeKit->hide();
    connect(viewAlternativeKit, &QAbstractButton::clicked, this,
        &ParloquinMainViewController::actionTapGoToOTP);

    lineAlternateViewTop = new Hairline(QColor::fromRgbF(0, 0, 0, 0.4F), viewAlternativeKit);
    lineAlternateViewTop->setObjectName(QStringLiteral("lineAlternateViewTop"));

    lblAlternateKitTitle = new Label(viewAlternativeKit);
    lblAlternateKitTitle->setObjectName(QStringLiteral("lblAlternateKitTitle"));
    lblAlternateKitTitle->setFontSize(12, QFont::Medium);
    lblAlternateKitTitle->setTextColor(Style::grey);
    lblAlternateKitTitle->setText(
        QCoreApplication::translate("Parloquin", "Don't use any of these apps?"));
    lblAlternateKitTitle->setNumberOfLines(0);
    lblAlternateKitTitle->setLeastHeight(panelTitleHeight);
    lblAlternateKitTitle->setMostHeight(panelTitleRoom);
    lblAlternateKitTitle->setShrinksToFit(smallestPanelTitle);
    lblAlternateKitTitle->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);

    iconSms = new ImageView(viewAlternativeKit);
    iconSms->setObjectName(QStringLiteral("iconSms"));
    iconSms->setContentMode(ContentMode::aspectFit);
    iconSms->setImageNamed(QStringLiteral("icon-sms"));

    iconArrowRight = new ImageView(viewAlternativeKit);
    iconArrowRight->setObjectName(QStringLiteral("iconArrowRight"));
    iconArrowRight->setContentMode(ContentMode::aspectFit);
    iconArrowRight->setImageNamed(QStringLiteral("icon-arrow-right-mini-black"), true);

    lblAlternateKitDesc = new Label(viewAlternativeKit);
    lblAlternateKitDesc->setObjectName(QStringLiteral("lblAlternateKitDesc"));
    lblAlternateKitDesc->setFontSize(14);
    lblAlternateKitDesc->setTextColor(Style::ink);
}

void ParloquinMainViewController::setTableBinding()
{
    tblKits->registerCell(
        nameOfClass<ThirdPartyKitTableCell>(), [] { return new ThirdPartyKitTableCell; });
    tblKits->setDelegate(this);
    tblKits->setDataSource(this);
}

void ParloquinMainViewController::showEmptyLook()
{
    if (requiredViewModel().listState.isAwaited())
        tblKits->setEmptyLook(QStringLiteral("icon-list-awaited"),
            QCoreApplication::translate("Parloquin", "Loading the apps…"),
            true); // the overlay is up meanwhile
    else
        tblKits->setEmptyLook(QStringLiteral("icon-list-empty"),
            QCoreApplication::translate("Parloquin", "No apps to show"));
}

// At twice the scale a long description would leave no room for a single app.
void ParloquinMainViewController::resizeEvent(QResizeEvent *event)
{
    BaseViewController::resizeEvent(event);
    if (!lblDescription)
        return;
    lblDescription->setMostHeight(
        event->size().height() - 2 * descriptionMargin - kitRowHeight - panelHeight);
    lblAlternateKitDesc->setFoldsToFit(
        event->size().width() < Style::narrowPage ? Style::smallestText : 0);
}

// clang-format off
void ParloquinMainViewController::setAnchorsForDescriptionLabel()
{
    activate(this, {
        leading(lblDescription)  == leading(this) + 25,
        trailing(lblDescription) == trailing(this) - 25,
        top(lblDescription)      == top(this) + descriptionMargin,
    });
}

// The table stands on the panel and the panel on the bottom edge: laid out together.
void ParloquinMainViewController::setAnchorsForKitsTable()
{
    using parloquin::height; // not the screen's own
    activate(this, {
        leading(viewAlternativeKit)  == leading(this),
        trailing(viewAlternativeKit) == trailing(this),
        bottom(viewAlternativeKit)   == bottom(this),
        height(viewAlternativeKit)   == panelHeight,

        leading(tblKits)             == leading(this),
        trailing(tblKits)            == trailing(this),
        top(tblKits)                 == bottom(lblDescription) + descriptionMargin,
        bottom(tblKits)              == top(viewAlternativeKit),
    });
}

void ParloquinMainViewController::setAnchorsForAlternativePanel()
{
    using parloquin::height; // not the screen's own
    using parloquin::width;
    activate(this, {
        leading(lineAlternateViewTop)  == leading(viewAlternativeKit),
        trailing(lineAlternateViewTop) == trailing(viewAlternativeKit),
        top(lineAlternateViewTop)      == top(viewAlternativeKit),
        height(lineAlternateViewTop)   == 0.5,

        leading(lblAlternateKitTitle)  == leading(viewAlternativeKit) + 25,
        trailing(lblAlternateKitTitle) == trailing(viewAlternativeKit) - 25,
        top(lblAlternateKitTitle)      == top(viewAlternativeKit) + 15,

        leading(iconSms)               == leading(viewAlternativeKit) + 25,
        bottom(iconSms)                == bottom(viewAlternativeKit) - 25,
        width(iconSms)                 == 30,
        height(iconSms)                == 30,

        trailing(iconArrowRight)       == trailing(viewAlternativeKit) - 20,
        width(iconArrowRight)          == 10,
        height(iconArrowRight)         == 15,
        centerY(iconArrowRight)        == centerY(iconSms),

        leading(lblAlternateKitDesc)   == trailing(iconSms) + 10,
        trailing(lblAlternateKitDesc)  == leading(iconArrowRight) - 10,
        centerY(lblAlternateKitDesc)   == centerY(iconSms),
        height(lblAlternateKitDesc)    == height(iconSms),
    });
}
// clang-format on

} // namespace parloquin
