#include "MainWindow.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

#include <Parloquin/Adapters/ParloquinSignals.h>
#include <Parloquin/Parloquin.h>

MainWindow::MainWindow()
    : m_tabs(new QTabWidget)
    , m_pages(new QStackedWidget)
    , m_state(new QLabel(tr("Not verified")))
{
    m_state->setObjectName("state");
    auto *const account = new QWidget;
    auto *const column = new QVBoxLayout(account);
    column->addWidget(m_state);
    const std::pair<const char *, QString> buttons[] = { { "dialog", tr("Verify in a dialog") },
        { "page", tr("Verify on a page") }, { "tab", tr("Verify in a tab") } };
    int place = 0;
    for (const auto &[name, text] : buttons) {
        auto *const button = new QPushButton(text);
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this,
            [this, where = static_cast<Place>(place++)] { verify(where); });
        column->addWidget(button);
    }
    column->addStretch();

    m_pages->addWidget(account);
    m_tabs->addTab(m_pages, tr("Account"));
    m_tabs->addTab(new QLabel(tr("Nothing to set")), tr("Settings"));
    setCentralWidget(m_tabs);
    resize(480, 900);
}

ParloquinViewController *MainWindow::makeKit(QWidget *place, const std::function<void()> &close)
{
    ParloquinViewController *const kit = Parloquin().viewControllerForLogin();
    auto *const outcome = new ParloquinSignals(kit);
    connect(outcome, &ParloquinSignals::succeeded, this, [this, close](const QString &id) {
        // A real app gives the id to its back end now, and believes only what that says.
        m_state->setText(tr("Verified, session %1").arg(id));
        close();
    });
    connect(outcome, &ParloquinSignals::failed, this,
        [this] { m_state->setText(tr("Not verified, try again")); });
    // The Close button hides the kit; where it was shown, the app takes away.
    connect(outcome, &ParloquinSignals::closed, this, close);

    auto *const column = new QVBoxLayout(place);
    column->setContentsMargins({});
    column->addWidget(kit);
    kit->setMaximumWidth(480); // made for a phone: wider, its lines are long to read
    return kit;
}

void MainWindow::verify(Place place)
{
    if (place == Place::dialog) {
        auto *const dialog = new QDialog(this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        makeKit(dialog, [dialog] { dialog->accept(); });
        dialog->resize(390, 844);
        dialog->open();
        return;
    }
    auto *const page = new QWidget;
    makeKit(page, [page] { page->deleteLater(); });
    if (place == Place::page)
        m_pages->setCurrentIndex(m_pages->addWidget(page));
    else
        m_tabs->setCurrentIndex(m_tabs->addTab(page, tr("Verify")));
}
