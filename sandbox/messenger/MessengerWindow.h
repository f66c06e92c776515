#pragma once

#include "sandbox/messenger/AppLook.h"
#include "sandbox/messenger/DeepLink.h"
#include "sandbox/messenger/MessageSender.h"

#include <QtWidgets/QWidget>

class QLabel;
class QVBoxLayout;

namespace messenger {
class Bubble;
class TapButton;

/// \brief The one window: who asks, what is to be sent, and a button that sends it.
///
/// Closes by itself a moment after the service has taken the message.
class MessengerWindow : public QWidget {
    Q_OBJECT

public:
    MessengerWindow(const DeepLink &link, const QString &service);

    TapButton *btnSend = nullptr;
    TapButton *btnClose = nullptr;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QWidget *makeBar();
    QWidget *makeHeader();
    QWidget *makeChat();
    QWidget *makeSheet();
    void send();
    void onSent();
    void onFailed(const QString &complaint);

    DeepLink m_link;
    AppLook m_look;
    MessageSender m_sender;
    QLabel *m_lblEmpty = nullptr;
    QLabel *m_lblState = nullptr;
    QLabel *m_lblError = nullptr;
    Bubble *m_bubble = nullptr;
};

}
