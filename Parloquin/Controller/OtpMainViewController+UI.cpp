#include "Parloquin/Controller/OtpMainViewController.h"

#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/ScrollView.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TapGestureRecognizer.h"
#include "Parloquin/Toolkit/TappableView.h"
#include "Parloquin/Toolkit/TextField.h"
#include "Parloquin/Toolkit/View.h"

#include <QtCore/QCoreApplication>

namespace parloquin {

namespace {
constexpr int fieldFont = 17; // px

template <class Box> Box *makeBox(QWidget *parent, const QString &name)
{
    auto *box = new Box(parent);
    box->setObjectName(name);
    box->setBorder(1, Qt::black);
    box->setCornerRadius(Style::cornerRadius);
    return box;
}

TextField *makeField(QWidget *parent, const QString &name, const QString &placeholder)
{
    auto *field = new TextField(parent);
    field->setObjectName(name);
    field->setFontSize(fieldFont);
    field->setPlaceholderText(placeholder);
    return field;
}
}

void OtpMainViewController::setUI()
{
    m_page = new ScrollView(this);
    setViewCountry();
    setViewPhoneNumber();
    setButtonContinue();
    setAnchorsForViewCountry();
    setAnchorsForViewPhoneNumber();
    setAnchorsForButtonContinue();
    m_page->setConcludingButton(btnContinue);
    setDefaultButton(btnContinue);
    m_page->setLastWidget(btnContinue, 20);
}

void OtpMainViewController::setViewCountry()
{
    viewCountryBack =
        makeBox<TappableView>(m_page->contentView(), QStringLiteral("viewCountryBack"));
    connect(viewCountryBack, &TappableView::clicked, this, [this] { actionButtonSelectCountry(); });

    txtCountryName = makeField(m_page->contentView(), QStringLiteral("txtCountryName"),
        QCoreApplication::translate("Parloquin", "Select Country.."));
    txtCountryName->setUserInteractionEnabled(false);
    // The box is what a screen reader finds and presses, so it says which country is chosen.
    viewCountryBack->setAccessibleName(txtCountryName->placeholderText());
    connect(txtCountryName, &QLineEdit::textChanged, viewCountryBack, [this](const QString &title) {
        viewCountryBack->setAccessibleName(title.isEmpty()
                ? txtCountryName->placeholderText()
                : QCoreApplication::translate("Parloquin", "Country, %1").arg(title));
    });

    iconArrowDown = new ImageView(m_page->contentView());
    iconArrowDown->setObjectName(QStringLiteral("iconArrowDown"));
    iconArrowDown->setImageNamed(QStringLiteral("icon-arrow-down"), true);
}

void OtpMainViewController::setViewPhoneNumber()
{
    viewPhoneBack = makeBox<View>(m_page->contentView(), QStringLiteral("viewPhoneBack"));

    txtCountryCode = makeField(m_page->contentView(), QStringLiteral("txtCountryCode"),
        QCoreApplication::translate("Parloquin", "+(Code)"));
    txtCountryCode->setUserInteractionEnabled(false);

    txtPhoneNumber = makeField(m_page->contentView(), QStringLiteral("txtPhoneNumber"),
        QCoreApplication::translate("Parloquin", "Phone Number.."));
    txtPhoneNumber->setPhonePadKeyboard();
    txtPhoneNumber->setReturnKey(Qt::EnterKeyDone);
    txtPhoneNumber->setAccessibleName(QCoreApplication::translate("Parloquin", "Phone number"));
    // The prefix stands in front of what is typed, and a reader hears it there.
    connect(txtCountryCode, &QLineEdit::textChanged, txtPhoneNumber,
        &QWidget::setAccessibleDescription);
    viewPhoneBack->setRingsFor(txtPhoneNumber);
    connect(txtPhoneNumber, &QLineEdit::textEdited, this,
        [this] { textFieldDidChange(txtPhoneNumber); });
    connect(txtPhoneNumber, &TextField::beganEditing, this, [this] { textFieldDidBeginEditing(); });
    connect(txtPhoneNumber, &TextField::endedEditing, this, [this] { textFieldDidEndEditing(); });
    // The keyboard's done key.
    connect(txtPhoneNumber, &QLineEdit::returnPressed, this, [this] { btnContinue->click(); });

    keyboardDismisser = new TapGestureRecognizer(this);
    keyboardDismisser->setObjectName(QStringLiteral("keyboardDismisser"));
    connect(keyboardDismisser, &TapGestureRecognizer::tapped, this, [this] { dismissKeyboard(); });
}

void OtpMainViewController::setButtonContinue()
{
    btnContinue = new Button(Button::Kind::filled,
        QCoreApplication::translate("Parloquin", "Send SMS"), m_page->contentView());
    btnContinue->setObjectName(QStringLiteral("btnContinue"));
    connect(btnContinue, &Button::clicked, this, [this] { actionButtonContinue(); });
}

// Inside a widget its own width() and height() hide the anchors of these names.
// clang-format off
void OtpMainViewController::setAnchorsForViewCountry()
{
    using parloquin::height;
    using parloquin::width;
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(viewCountryBack)  == leading(safeArea)         + 20,
        trailing(viewCountryBack) == trailing(safeArea)        - 20,
        top(viewCountryBack)      == top(safeArea)             + 30,
        height(viewCountryBack)   == 60,

        trailing(iconArrowDown)   == trailing(viewCountryBack) - 5,
        height(iconArrowDown)     == 12,
        width(iconArrowDown)      == 17,
        centerY(iconArrowDown)    == centerY(viewCountryBack),

        leading(txtCountryName)   == leading(viewCountryBack)  + 15,
        trailing(txtCountryName)  == leading(iconArrowDown)    - 10,
        centerY(txtCountryName)   == centerY(viewCountryBack),
        height(txtCountryName)    == 40,
    });
}

void OtpMainViewController::setAnchorsForViewPhoneNumber()
{
    using parloquin::height;
    using parloquin::width;
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(viewPhoneBack)   == leading(safeArea)       + 20,
        trailing(viewPhoneBack)  == trailing(safeArea)      - 20,
        top(viewPhoneBack)       == bottom(viewCountryBack) + 20,
        height(viewPhoneBack)    == 60,

        leading(txtCountryCode)  == leading(viewPhoneBack)  + 15,
        width(txtCountryCode)    == 90,
        height(txtCountryCode)   == 40,
        centerY(txtCountryCode)  == centerY(viewPhoneBack),

        leading(txtPhoneNumber)  == trailing(txtCountryCode),
        trailing(txtPhoneNumber) == trailing(viewPhoneBack) - 10,
        height(txtPhoneNumber)   == 40,
        centerY(txtPhoneNumber)  == centerY(viewPhoneBack),
    });
}

void OtpMainViewController::setAnchorsForButtonContinue()
{
    using parloquin::height;
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(btnContinue)  == leading(safeArea)     + 20,
        trailing(btnContinue) == trailing(safeArea)    - 20,
        top(btnContinue)      == bottom(viewPhoneBack) + 30,
        height(btnContinue)   == 55,
    });
}
// clang-format on

void OtpMainViewController::setBackButton()
{
    btnBack = new BarButtonItem(
        QCoreApplication::translate("Parloquin", "Back"), QStringLiteral("btnBack"));
    connect(btnBack, &BarButtonItem::clicked, this, [this] { actionButtonBack(); });
    navigationItem().setLeftBarButtonItem(btnBack);
}

} // namespace parloquin
