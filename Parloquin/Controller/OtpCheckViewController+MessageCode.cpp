#include "Parloquin/Controller/OtpCheckViewController.h"

#include "Parloquin/Extension/QString+OneTimeCode.h"
#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "Parloquin/Platform/IncomingMessages.h"
#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/Announcement.h"
#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/ScrollView.h"
#include "Parloquin/Toolkit/TextField.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>

#include <algorithm>

namespace parloquin {

void OtpCheckViewController::listenForMessages()
{
    m_messages = std::make_unique<IncomingMessages>([this](const QString &text) {
        // Only a message that says whose code it brings; of any other nothing is kept.
        if (const auto code = oneTimeCode(text, QUrl(serviceBaseUrl()).host(), codeLength))
            offerCode(*code);
    });
}

void OtpCheckViewController::offerCode(const QString &code)
{
    if (code == m_offeredCode) // the message came twice
        return;
    m_offeredCode = code;
    btnMessageCode->setText(
        QCoreApplication::translate("Parloquin", "Fill in %1 from your message").arg(code));
    orderMessageCode();
    btnMessageCode->show();
    sayOffer();
}

// Readers stop what they say when the keyboard moves: the page and its first box come before.
void OtpCheckViewController::sayOffer()
{
    if (m_isTold && !m_offeredCode.isEmpty())
        m_offer->say(btnMessageCode->text());
}

// One step of the Tab key from where the person types, or will.
void OtpCheckViewController::orderMessageCode()
{
    const auto typing = std::ranges::find_if(txtCode, &QWidget::hasFocus);
    setTabOrder(typing != txtCode.end() ? *typing : txtCode.front(), btnMessageCode);
}

void OtpCheckViewController::setButtonMessageCode()
{
    // At the page's lower end, as a keyboard offers words: nothing that is there moves, unless it
    // is typed in and would be covered.
    btnMessageCode = new Button(Button::Kind::soft, {}, this);
    btnMessageCode->setObjectName(QStringLiteral("btnMessageCode"));
    btnMessageCode->hide();
    connect(btnMessageCode, &Button::clicked, this, [this] { fillCode(); });
    m_page->setCover(btnMessageCode);
    m_offer = new Announcement(this);

    // As high as its text needs: on a narrow screen it folds.
    // clang-format off
    activate(this, {
        leading(btnMessageCode)  == leading(this)  + 20,
        trailing(btnMessageCode) == trailing(this) - 20,
        bottom(btnMessageCode)   == bottom(this)   - 20,
    });
    // clang-format on
}

void OtpCheckViewController::fillCode()
{
    for (int i = 0; i < codeLength; ++i)
        txtCode[static_cast<std::size_t>(i)]->setText(m_offeredCode.mid(i, 1));
    rememberCode();
    btnCheck->setFocus();
    withdrawCode();
}

void OtpCheckViewController::withdrawCode()
{
    m_offeredCode.clear();
    btnMessageCode->hide();
    m_offer->withdraw();
}

} // namespace parloquin
