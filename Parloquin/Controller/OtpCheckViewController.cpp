#include "Parloquin/Controller/OtpCheckViewController.h"

#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Platform/IncomingMessages.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/TextField.h"

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <iterator>

namespace parloquin {

namespace {
// One character per edit: of a longer paste all but the last stay.
void shorten(TextField *box)
{
    const QString shortened = shortenedByOne(box->text());
    if (shortened != box->text())
        box->setText(shortened);
}
}

OtpCheckViewController::OtpCheckViewController(QWidget *parent)
    : BaseViewController(parent)
{
}

OtpCheckViewController::~OtpCheckViewController() = default;

void OtpCheckViewController::viewDidLoad()
{
    BaseViewController::viewDidLoad();
    // Once the screen has slid in, so that the keyboard does not rise during the motion.
    onMainAfter(std::chrono::milliseconds(350), this, [this] {
        if (NavigationController *navigation = navigationController();
            navigation && txtCode.front())
            navigation->focus(txtCode.front());
    });
}

void OtpCheckViewController::setBinding()
{
    OtpCheckViewModel &model = requiredViewModel();
    model.reference = reference;
    model.countryCode = countryCode;
    model.phoneNumber = phoneNumber;
}

void OtpCheckViewController::setLocalization()
{
    setTitle(QCoreApplication::translate("Parloquin", "SMS"));
}

void OtpCheckViewController::viewWillAppear(bool animated)
{
    BaseViewController::viewWillAppear(animated);
    setBackButton();
    listenForMessages();
}

void OtpCheckViewController::viewWillDisappear(bool animated)
{
    BaseViewController::viewWillDisappear(animated);
    m_messages.reset();
    withdrawCode();
    navigationItem().setLeftBarButtonItem(nullptr);
}

void OtpCheckViewController::actionButtonBack()
{
    if (NavigationController *navigation = navigationController())
        navigation->popViewController(true);
}

void OtpCheckViewController::actionButtonCheck() { requiredViewModel().requestCheckOtp(); }

void OtpCheckViewController::textFieldDidChange(const TextField *field)
{
    const auto box = std::find(txtCode.begin(), txtCode.end(), field);
    shorten(*box);
    if ((*box)->text().isEmpty()) {
        if (box != txtCode.begin())
            (*std::prev(box))->setFocus();
    } else if (std::next(box) != txtCode.end()) {
        (*std::next(box))->setFocus();
    } else {
        btnCheck->setFocus(Qt::OtherFocusReason); // no field any more: the keyboard closes
    }
    orderMessageCode();
    rememberCode();
}

void OtpCheckViewController::rememberCode()
{
    QString code;
    for (const TextField *box : txtCode)
        code += box->text();
    requiredViewModel().otpCode = code;
}

} // namespace parloquin
