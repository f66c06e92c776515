#include "sandbox/messenger/AppLook.h"
#include "sandbox/messenger/DeepLink.h"
#include "sandbox/messenger/MessengerWindow.h"
#include "sandbox/messenger/TapButton.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtCore/QUrl>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace {
constexpr int badUsage = 2;

int complain(const QString &complaint)
{
    std::fprintf(stderr, "parloquin-messenger: %s\n", qPrintable(complaint));
    return badUsage;
}

bool isService(const QString &text)
{
    const QUrl url(QStringLiteral("http://%1").arg(text), QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() && url.port() > 0 && url.path().isEmpty()
        && !url.hasQuery() && !url.hasFragment() && url.userInfo().isEmpty();
}
}

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QApplication::setLayoutDirection(QLocale().textDirection());
    QTranslator texts;
    if (texts.load(QLocale(), QStringLiteral("messenger"), QStringLiteral("_"),
            QStringLiteral(":/translations")))
        QCoreApplication::installTranslator(&texts);
    QApplication::setApplicationName(QStringLiteral("parloquin-messenger"));
    QGuiApplication::setDesktopFileName(QStringLiteral("parloquin-messenger"));

    QCommandLineParser parser;
    const QCommandLineOption service(QStringLiteral("service"),
        QStringLiteral("Where the service listens."), QStringLiteral("host:port"),
        QStringLiteral("127.0.0.1:8046"));
    const QCommandLineOption autoSend(
        QStringLiteral("auto-send"), QStringLiteral("Press Send once the window shows."));
    const QCommandLineOption picture(QStringLiteral("picture"),
        QStringLiteral("Save a picture of the window."), QStringLiteral("FILE.png"));
    const auto help = parser.addHelpOption();
    parser.addOptions({ service, autoSend, picture });
    parser.addPositionalArgument(
        QStringLiteral("LINK"), QStringLiteral("The link that opened this app."));
    if (!parser.parse(QApplication::arguments()))
        return complain(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp();
    if (!isService(parser.value(service)))
        return complain(QStringLiteral("--service: expected host:port"));
    const auto links = parser.positionalArguments();
    if (links.size() != 1)
        return complain(QStringLiteral("expected one link, got %1").arg(links.size()));
    QString fault;
    const auto link = messenger::DeepLink::parse(links.first(), messenger::AppLook::apps(), &fault);
    if (!link)
        return complain(fault);

    QFont font;
    font.setFamilies({ QStringLiteral("Inter"), QStringLiteral("Noto Sans Arabic") });
    QApplication::setFont(font);
    messenger::MessengerWindow window(*link, parser.value(service));
    window.resize(390, 844);
    window.show();
    // By the environment too, as who opens a link cannot say how.
    const auto file = parser.isSet(picture) ? parser.value(picture)
                                            : qEnvironmentVariable("PARLOQUIN_MESSENGER_PICTURE");
    const bool sends =
        parser.isSet(autoSend) || qEnvironmentVariableIsSet("PARLOQUIN_MESSENGER_AUTO_SEND");
    QTimer::singleShot(0, &window, [&] {
        // The picture first: it shows what a person decides on.
        if (!file.isEmpty() && !window.grab().save(file))
            complain(QStringLiteral("%1: cannot be written").arg(file));
        if (sends)
            window.btnSend->click();
    });
    return QApplication::exec();
}
