#include "Parloquin/Controller/OtpCheckViewController.h"

#include "Parloquin/Extension/QString+Characters.h"
#include "Parloquin/Platform/IncomingMessages.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Parloquin/Toolkit/TextField.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>

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
        m_isTold = true;
        sayOffer();
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

TextField *OtpCheckViewController::boxFor(const QObject *from, const QKeyEvent &key) const
{
    if ((key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return nullptr;
    if (from == btnCheck)
        return key.key() == Qt::Key_Backspace ? txtCode.back() : nullptr;
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const auto at = std::find(txtCode.begin(), txtCode.end(), from) - txtCode.begin();
    switch (key.key()) {
    case Qt::Key_Home:
        return txtCode.front();
    case Qt::Key_End:
        return txtCode.back();
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const auto to = at + ((key.key() == Qt::Key_Right) == mirrored ? -1 : 1);
        return txtCode[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(to, 0, codeLength - 1))];
    }
    default:
        return nullptr;
    }
}

bool OtpCheckViewController::eventFilter(QObject *watched, QEvent *event)
{
    TextField *const box = event->type() == QEvent::KeyPress
        ? boxFor(watched, *static_cast<QKeyEvent *>(event))
        : nullptr;
    if (!box)
        return BaseViewController::eventFilter(watched, event);
    box->setFocus(Qt::TabFocusReason); // and what is in it is selected: typing replaces it
    orderMessageCode();
    return true;
}

void OtpCheckViewController::rememberCode()
{
    QString code;
    for (const TextField *box : txtCode)
        code += box->text();
    requiredViewModel().otpCode = code;
}

} // namespace parloquin
