#include "ArabicTexts.h"
#include "AutoPlayer.h"
#include "DemoWindow.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <chrono>
#include <cstdio>

using namespace std::chrono_literals;

namespace {

/// Looks for the service until it answers or the time is up.
bool await(demo::BackEnd &backEnd, std::chrono::seconds patience)
{
    QEventLoop loop;
    const std::function<void()> ask = [&] {
        backEnd.askHealth([&](bool running) {
            if (running)
                loop.exit(0);
            else
                QTimer::singleShot(50ms, &loop, ask);
        });
    };
    QTimer::singleShot(patience, &loop, [&loop] { loop.exit(1); });
    ask();
    return loop.exec() == 0;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("parloquin-demo"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("demo.invalid"));

    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("A host of the Parloquin kit; talks to the sandbox at " DEMO_BACK_END "."));
    arguments.addHelpOption();
    const QCommandLineOption automatic(
        QStringLiteral("auto"), QStringLiteral("Play both roads without hands, then end."));
    const QCommandLineOption pictures(QStringLiteral("pictures"),
        QStringLiteral("Folder for the pictures of --auto."), QStringLiteral("folder"),
        QStringLiteral("."));
    const QCommandLineOption language(QStringLiteral("lang"),
        QStringLiteral("Language instead of the system's, as \"ar\"."), QStringLiteral("name"));
    const QCommandLineOption awaitService(QStringLiteral("await-service"),
        QStringLiteral("Only wait, this long, until the sandbox answers."),
        QStringLiteral("seconds"));
    arguments.addOptions({ automatic, pictures, language, awaitService });
    arguments.process(app);

    if (arguments.isSet(awaitService)) {
        demo::BackEnd backEnd;
        return await(backEnd, std::chrono::seconds(arguments.value(awaitService).toInt())) ? 0 : 1;
    }

    const QLocale locale =
        arguments.isSet(language) ? QLocale(arguments.value(language)) : QLocale::system();
    QLocale::setDefault(locale);
    QApplication::setLayoutDirection(locale.textDirection());
    demo::ArabicTexts arabic;
    if (locale.language() == QLocale::Arabic)
        QCoreApplication::installTranslator(&arabic);
    // One look on every desktop; the pages and the kit bring their own shapes.
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font;
    font.setFamilies({ QStringLiteral("Inter"), QStringLiteral("Noto Sans Arabic") });
    QApplication::setFont(font);

    demo::DemoWindow window;
    window.show();
    if (!arguments.isSet(automatic))
        return QApplication::exec();

    const QString folder = arguments.value(pictures);
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "demo: cannot make the folder %s\n", qPrintable(folder));
        return 1;
    }
    demo::AutoPlayer player(window, folder);
    int outcome = 1;
    QTimer::singleShot(0, &player, [&] {
        outcome = player.play() ? 0 : 1;
        QCoreApplication::exit(outcome);
    });
    QApplication::exec();
    return outcome;
}
