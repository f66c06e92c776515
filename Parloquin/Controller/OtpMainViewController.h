#pragma once

#include "Parloquin/Controller/Base/BaseViewController.h"
#include "Parloquin/Protocol/CountryProtocol.h"
#include "Parloquin/Protocol/Updateable.h"
#include "Parloquin/ViewModel/OtpMainViewModel.h"

#include <QtCore/QPointer>

namespace parloquin {

class BarButtonItem;
class Button;
class ImageView;
class ScrollView;
class TapGestureRecognizer;
class TappableView;
class TextField;
class View;

/// \brief The first screen of the road by SMS: country, number, and a button that sends for a code.
///
/// Main thread only.
class OtpMainViewController : public BaseViewController<OtpMainViewModel>,
                              public Updateable,
                              public CountryProtocol {
    Q_OBJECT
public:
    explicit OtpMainViewController(QWidget *parent = nullptr);
    ~OtpMainViewController() override;

    void actionButtonBack();
    void actionButtonContinue();
    void actionButtonSelectCountry();

    /// Moves on to code entry when the service has answered with a reference.
    void rebindData() override;
    void setCountry(const CountryModel &country) override;

protected:
    void setLocalization() override;
    void setUI() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

private:
    void setViewCountry();
    void setViewPhoneNumber();
    void setButtonContinue();
    void setAnchorsForViewCountry();
    void setAnchorsForViewPhoneNumber();
    void setAnchorsForButtonContinue();
    void setBackButton();

    void textFieldDidBeginEditing();
    void textFieldDidEndEditing();
    void textFieldDidChange(const TextField *field);
    void dismissKeyboard();
    void goToCheckVC();

    TapGestureRecognizer *keyboardDismisser = nullptr;
    QPointer<BarButtonItem> btnBack;
    TappableView *viewCountryBack = nullptr;
    TextField *txtCountryName = nullptr;
    ImageView *iconArrowDown = nullptr;
    View *viewPhoneBack = nullptr;
    TextField *txtCountryCode = nullptr;
    TextField *txtPhoneNumber = nullptr;
    Button *btnContinue = nullptr;

    ScrollView *m_page = nullptr;
};

} // namespace parloquin
