#include "Parloquin/Controller/OtpCheckViewController.h"

#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/ArrangedRow.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/Button.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/ScrollView.h"
#include "Parloquin/Toolkit/Style.h"
#include "Parloquin/Toolkit/TextField.h"
#include "Parloquin/Toolkit/View.h"

#include <QtCore/QCoreApplication>

namespace parloquin {

void OtpCheckViewController::setUI()
{
    m_page = new ScrollView(this);
    setDescLabel();
    setViewFieldsBack();
    setButtonCheck();
    setButtonTryAgain();
    setAnchorsForDescLabel();
    setAnchorsForFields();
    setAnchorsForButtonCheck();
    setAnchorsForButtonTryAgain();
    setButtonMessageCode();
    m_page->setConcludingButton(btnCheck);
    setDefaultButton(btnCheck);
    m_page->setLastWidget(btnTryAgain, 20);
}

void OtpCheckViewController::setDescLabel()
{
    // Stays empty, and so takes no height.
    lblDescription = new Label(m_page->contentView());
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->setFontSize(18);
    lblDescription->setTextColor(Style::ink);
    lblDescription->setNumberOfLines(0);
    lblDescription->setAlignment(Qt::AlignCenter);
}

void OtpCheckViewController::setViewFieldsBack()
{
    viewFieldsBack = new View(m_page->contentView());
    viewFieldsBack->setObjectName(QStringLiteral("viewFieldsBack"));
    viewFieldsBack->setBorder(1, Style::blue);
    viewFieldsBack->setCornerRadius(Style::cornerRadius);
    // A view that takes no taps keeps them from its children too.
    viewFieldsBack->setAttribute(Qt::WA_TransparentForMouseEvents, false);

    stackTextFields = new ArrangedRow(54, 15, viewFieldsBack);
    stackTextFields->setObjectName(QStringLiteral("stackTextFields"));

    int number = 0;
    for (TextField *&box : txtCode) {
        TextField *field = box = new TextField(stackTextFields);
        stackTextFields->add(field);
        field->setObjectName(QStringLiteral("txtCode%1").arg(number++));
        field->setAccessibleName(QCoreApplication::translate("Parloquin", "Code, digit %1 of %2")
                                     .arg(number)
                                     .arg(codeLength));
        field->setFontSize(19, QFont::DemiBold);
        field->setAlignment(Qt::AlignCenter);
        field->setBorder(0.5, Style::grey, 4);
        field->setPhonePadKeyboard();
        field->installEventFilter(this);
        connect(field, &QLineEdit::textEdited, this, [this, field] { textFieldDidChange(field); });
        // The caret stays behind the digit, wherever the box is tapped: what is typed then is the
        // second character, and goes.
        connect(field, &QLineEdit::cursorPositionChanged, field, [field] {
            if (!field->hasSelectedText())
                field->end(false);
        });
    }
    for (std::size_t i = 1; i < txtCode.size(); ++i) {
        TextField *box = txtCode[i - 1];
        TextField *next = txtCode[i];
        connect(box, &QLineEdit::returnPressed, next, [next] { next->setFocus(); });
        connect(next, &TextField::deletedBeyondStart, box, [box] { box->setFocus(); });
    }
    connect(txtCode.back(), &QLineEdit::returnPressed, this, [this] { btnCheck->click(); });
}

void OtpCheckViewController::setButtonCheck()
{
    btnCheck = new Button(Button::Kind::filled,
        QCoreApplication::translate("Parloquin", "Send Code"), m_page->contentView());
    btnCheck->setObjectName(QStringLiteral("btnCheck"));
    btnCheck->installEventFilter(this);
    connect(btnCheck, &Button::clicked, this, [this] { actionButtonCheck(); });
}

void OtpCheckViewController::setButtonTryAgain()
{
    // Leads nowhere: a new code is sent from the screen before.
    btnTryAgain = new Button(Button::Kind::link,
        QCoreApplication::translate(
            "Parloquin", "Didn't you receive the code? Tap here to try again"),
        m_page->contentView());
    btnTryAgain->setObjectName(QStringLiteral("btnTryAgain"));
}

// Inside a widget its own height() hides the anchor of this name.
// clang-format off
void OtpCheckViewController::setAnchorsForDescLabel()
{
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(lblDescription)  == leading(safeArea)  + 15,
        trailing(lblDescription) == trailing(safeArea) - 15,
        top(lblDescription)      == top(safeArea)      + 30,
    });
}

void OtpCheckViewController::setAnchorsForFields()
{
    using parloquin::height;
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(viewFieldsBack)  == leading(safeArea)      + 20,
        trailing(viewFieldsBack) == trailing(safeArea)     - 20,
        top(viewFieldsBack)      == bottom(lblDescription) + 20,
        height(viewFieldsBack)   == 75,

        leading(stackTextFields)  == leading(viewFieldsBack)  + 8, // room for a ring
        trailing(stackTextFields) == trailing(viewFieldsBack) - 8,
        height(stackTextFields)   == 54,
        centerY(stackTextFields)  == centerY(viewFieldsBack),
    });
}

void OtpCheckViewController::setAnchorsForButtonCheck()
{
    using parloquin::height;
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(btnCheck)  == leading(safeArea)      + 20,
        trailing(btnCheck) == trailing(safeArea)     - 20,
        top(btnCheck)      == bottom(viewFieldsBack) + 25,
        height(btnCheck)   == 55,
    });
}

void OtpCheckViewController::setAnchorsForButtonTryAgain()
{
    QWidget *safeArea = m_page->contentView();
    activate(safeArea, {
        leading(btnTryAgain)  == leading(safeArea)  + 15,
        trailing(btnTryAgain) == trailing(safeArea) - 15,
        top(btnTryAgain)      == bottom(btnCheck)   + 35,
    });
}
// clang-format on

void OtpCheckViewController::setBackButton()
{
    btnBack = new BarButtonItem(
        QCoreApplication::translate("Parloquin", "Back"), QStringLiteral("btnBack"));
    connect(btnBack, &BarButtonItem::clicked, this, [this] { actionButtonBack(); });
    navigationItem().setLeftBarButtonItem(btnBack);
}

} // namespace parloquin
