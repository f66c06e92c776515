#include "Parloquin/Cell/CountryTableCell.h"

#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/FocusRing.h"
#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QPainter>

namespace parloquin {

namespace {
constexpr int fontSize = 17; // px
}

CountryTableCell::CountryTableCell(QWidget *parent)
    : TableCell(parent)
    , iconTick(new ImageView(this))
    , lblTitle(new Label(this))
    , lblPhoneCode(new Label(this))
{
    setObjectName(QStringLiteral("CountryTableCell"));

    iconTick->setObjectName(QStringLiteral("iconTick"));
    iconTick->setImageNamed(QStringLiteral("icon-tick-blue"));
    iconTick->setContentMode(ContentMode::aspectFit);
    iconTick->hide();

    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    lblTitle->setFontSize(fontSize);
    lblTitle->setTextColor(Style::ink);
    lblTitle->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    lblPhoneCode->setObjectName(QStringLiteral("lblPhoneCode"));
    lblPhoneCode->setFontSize(fontSize);
    lblPhoneCode->setTextColor(Style::secondInk);
    lblPhoneCode->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblPhoneCode->setShrinksToFit(6);

    using parloquin::height; // not the cell's own
    using parloquin::width;
    // clang-format off
    parloquin::activate(this, {
        trailing(lblPhoneCode) == trailing(this)        - 15,
        width(lblPhoneCode)    == 53,
        height(lblPhoneCode)   == 30,
        centerY(lblPhoneCode)  == centerY(this),

        trailing(iconTick)     == leading(lblPhoneCode) - 7,
        width(iconTick)        == 20,
        height(iconTick)       == 20,
        centerY(iconTick)      == centerY(this),

        leading(lblTitle)      == leading(this)         + 15,
        trailing(lblTitle)     == leading(iconTick)     - 7,
        height(lblTitle)       == 30,
        centerY(lblTitle)      == centerY(this),
    });
    // clang-format on
}

void CountryTableCell::setCell(const CountryModel &model)
{
    lblTitle->setText(titleOf(model));
    lblPhoneCode->setText(model.phoneCode.value_or(QString()));
    m_country = model;
}

QString CountryTableCell::titleOf(const CountryModel &model)
{
    return model.title.value_or(QStringLiteral(" (%1)").arg(model.countryCode.value_or(QString())));
}

void CountryTableCell::setSelectedState(bool selected)
{
    m_selected = selected;
    iconTick->setVisible(selected);
}

void CountryTableCell::resizeEvent(QResizeEvent *)
{
    lblTitle->setFoldsToFit(width() < Style::narrowPage ? Style::smallestText : 0);
}

void CountryTableCell::paintEvent(QPaintEvent *)
{
    if (!hasKeyboardFocus()) // the table shows a press, and the lines between the rows
        return;
    QPainter painter(this);
    FocusRing::paint(painter, rect(), 0, true, Style::blue);
}

} // namespace parloquin
