#include <QtWidgets/QApplication>

#include <Parloquin/Parloquin.h>

#include <cstdio>

// On the kit's network thread, or on the main thread for a call that fails at once: what touches
// widgets goes to the main thread.
class Printer : public ParloquinDelegate {
public:
    void verificationDidSucceed(const QString &sessionId) override
    {
        std::printf("verified, session %s\n", qPrintable(sessionId));
        QMetaObject::invokeMethod(qApp, [] { QApplication::closeAllWindows(); });
    }

    void verificationDidFail(ParloquinError error) override
    {
        std::printf("not verified, reason %d\n", int(error));
    }
};

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const ParloquinOptions options(ParloquinEnvironment::debug, true,
        { QColor(Qt::blue), ParloquinStatusBarStyle::lightContent });
    ParloquinViewController *container = Parloquin(options).viewControllerForLogin();
    container->setAttribute(Qt::WA_DeleteOnClose);
    container->setKitDelegate(std::make_shared<Printer>());
    container->resize(390, 844);
    container->show();
    return app.exec();
}
