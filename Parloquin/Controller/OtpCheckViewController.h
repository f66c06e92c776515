#pragma once

#include "Parloquin/Controller/Base/BaseViewController.h"
#include "Parloquin/Protocol/Updateable.h"
#include "Parloquin/ViewModel/OtpCheckViewModel.h"

#include <QtCore/QPointer>

#include <array>
#include <memory>

namespace parloquin {

class Announcement;
class ArrangedRow;
class BarButtonItem;
class Button;
class IncomingMessages;
class Label;
class ScrollView;
class TextField;
class View;

/// \brief The second screen of the road by SMS: three boxes for the code that was sent.
///
/// Stays open whatever the outcome: closing is the host's. Main thread only.
class OtpCheckViewController : public BaseViewController<OtpCheckViewModel>, public Updateable {
    Q_OBJECT
public:
    /// A box for each character of the code.
    static constexpr int codeLength = 3;

    explicit OtpCheckViewController(QWidget *parent = nullptr);
    ~OtpCheckViewController() override;

    // Set before the push.
    std::optional<QString> reference; ///< of the code sent
    std::optional<QString> countryCode;
    std::optional<QString> phoneNumber; ///< as typed, without the dialling prefix

    void actionButtonBack();
    void actionButtonCheck();

    void rebindData() override { } // the outcome goes to the host; nothing changes here

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void viewDidLoad() override;
    void setBinding() override;
    void setLocalization() override;
    void setUI() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

private:
    void setDescLabel();
    void setViewFieldsBack();
    void setButtonCheck();
    void setButtonTryAgain();
    void setAnchorsForDescLabel();
    void setAnchorsForFields();
    void setAnchorsForButtonCheck();
    void setAnchorsForButtonTryAgain();
    void setBackButton();

    void textFieldDidChange(const TextField *field);
    /// Where a key leads among the boxes, if anywhere: the arrows by sight, as a box has no room
    /// for a caret to walk in; Backspace back from the button that the last digit led to.
    [[nodiscard]] TextField *boxFor(const QObject *from, const QKeyEvent &key) const;
    void rememberCode();

    void listenForMessages();
    void offerCode(const QString &code);
    void sayOffer();
    void setButtonMessageCode();
    void orderMessageCode();
    void fillCode();
    void withdrawCode();

    QPointer<BarButtonItem> btnBack;
    Label *lblDescription = nullptr;
    View *viewFieldsBack = nullptr;
    ArrangedRow *stackTextFields = nullptr;
    std::array<TextField *, codeLength> txtCode {}; // named txtCode0, txtCode1, ...
    Button *btnCheck = nullptr;
    Button *btnTryAgain = nullptr;

    Button *btnMessageCode = nullptr; // shown while a code that came by SMS is offered
    Announcement *m_offer = nullptr; // of that

    ScrollView *m_page = nullptr;
    std::unique_ptr<IncomingMessages> m_messages; // while the screen is shown
    QString m_offeredCode;
    bool m_isTold = false; // to readers: the page, and the box that has the keyboard
};

} // namespace parloquin
