// The samples of the documents that no example holds; here they compile. tests/Package/documents
// compares them, line by line.
#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtWidgets/QDialog>
#include <QtWidgets/QVBoxLayout>

#include <Parloquin/Adapters/ParloquinSignals.h>
#include <Parloquin/Parloquin.h>

namespace {

class Window : public QWidget {
public:
    void verified(const QString &sessionId);
    void openDialog(int height);
    ParloquinViewController *container = nullptr;
};

void Window::verified(const QString &) { }

class Listener : public ParloquinDelegate {
public:
    void verificationDidSucceed(const QString &sessionId) override
    {
        QMetaObject::invokeMethod(qApp, [window = m_window, sessionId] {
            if (window) // a QPointer, looked at on the main thread only
                window->verified(sessionId);
        });
    }
    void verificationDidFail(ParloquinError) override { }
    QPointer<Window> m_window;
};

void Window::openDialog(int height)
{
    container->setContentsMargins(0, height, 0, 0);
    auto *const dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    ParloquinViewController *const kit = Parloquin().viewControllerForLogin();
    auto *const outcome = new ParloquinSignals(kit);
    connect(outcome, &ParloquinSignals::succeeded, this, &Window::verified);
    connect(outcome, &ParloquinSignals::succeeded, dialog, &QDialog::accept);
    connect(outcome, &ParloquinSignals::closed, dialog, &QDialog::reject);
    auto *const column = new QVBoxLayout(dialog);
    column->setContentsMargins({});
    column->addWidget(kit);
    dialog->open();

    kit->setMaximumWidth(480);
    kit->setKitDelegate(parloquinDelegate(
        this, [this](const QString &sessionId) { verified(sessionId); },
        [](ParloquinError) { qWarning("not verified"); }));
}

} // namespace

/// Keeps what is above from being unused.
void documents()
{
    Window().openDialog(0);
    (void)std::make_shared<Listener>();
}
