#include "Parloquin/Controller/OtpMainViewController.h"

#include "Parloquin/Controller/CountryListViewController.h"
#include "Parloquin/Controller/OtpCheckViewController.h"
#include "Parloquin/Model/CountryModel.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/TapGestureRecognizer.h"
#include "Parloquin/Toolkit/TextField.h"

#include <QtCore/QCoreApplication>

namespace parloquin {

OtpMainViewController::OtpMainViewController(QWidget *parent)
    : BaseViewController(parent)
{
}

OtpMainViewController::~OtpMainViewController() = default;

void OtpMainViewController::setLocalization()
{
    setTitle(QCoreApplication::translate("Parloquin", "SMS"));
}

void OtpMainViewController::viewWillAppear(bool animated)
{
    BaseViewController::viewWillAppear(animated);
    setBackButton();
}

void OtpMainViewController::viewWillDisappear(bool animated)
{
    BaseViewController::viewWillDisappear(animated);
    navigationItem().setLeftBarButtonItem(nullptr);
}

void OtpMainViewController::actionButtonBack()
{
    if (NavigationController *navigation = navigationController())
        navigation->popViewController(true);
}

void OtpMainViewController::actionButtonContinue() { requiredViewModel().requestSendOtp(); }

void OtpMainViewController::actionButtonSelectCountry()
{
    NavigationController *navigation = navigationController();
    if (!navigation)
        return;
    auto *picker = new CountryListViewController;
    // The current country is not passed on: the picker opens without a tick.
    picker->countryProtocol = weakCountryProtocol();
    navigation->pushViewController(picker, true);
}

void OtpMainViewController::rebindData()
{
    const auto &reference = requiredViewModel().reference;
    if (reference && !reference->isEmpty())
        goToCheckVC();
}

void OtpMainViewController::goToCheckVC()
{
    NavigationController *navigation = navigationController();
    if (!navigation)
        return;
    const OtpMainViewModel &model = requiredViewModel();
    auto *check = new OtpCheckViewController;
    check->reference = model.reference;
    check->countryCode = model.selectedCountryCode;
    check->phoneNumber = model.phoneNumber;
    navigation->pushViewController(check, true);
}

void OtpMainViewController::setCountry(const CountryModel &country)
{
    txtCountryName->setText(country.title.value_or(QString()));
    txtCountryCode->setText(country.phoneCode.value_or(QString()));
    OtpMainViewModel &model = requiredViewModel();
    model.phoneCode = country.phoneCode;
    model.selectedCountryCode = country.countryCode;
}

void OtpMainViewController::textFieldDidBeginEditing()
{
    keyboardDismisser->attach(this, txtPhoneNumber);
}

void OtpMainViewController::textFieldDidEndEditing() { keyboardDismisser->detach(); }

void OtpMainViewController::textFieldDidChange(const TextField *field)
{
    if (field != txtPhoneNumber)
        return;
    const QString text = field->text();
    // An emptied field keeps the number that was in it.
    if (text.isEmpty())
        return;
    requiredViewModel().phoneNumber = text;
}

void OtpMainViewController::dismissKeyboard()
{
    if (txtPhoneNumber->hasFocus())
        setFocus(Qt::OtherFocusReason); // the page keeps the keys, and shows nothing of it
}

} // namespace parloquin
