#include "AutoPlayer.h"
#include "DemoWindow.h"
#include "Recorder.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

#include <chrono>
#include <cstdio>
#include <optional>

using namespace std::chrono_literals;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("parloquin-demo"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("demo.invalid"));

    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QStringLiteral("A host of the Parloquin kit; talks to the sandbox at " DEMO_BACK_END "."));
    arguments.addHelpOption();
    const QCommandLineOption automatic(QStringLiteral("auto"),
        QStringLiteral("Play both roads without hands, with pictures into this folder, then end."),
        QStringLiteral("folder"));
    const QCommandLineOption record(QStringLiteral("record"),
        QStringLiteral("Folder for the frames of --auto, played at leisure."),
        QStringLiteral("folder"));
    arguments.addOptions({ automatic, record });
    arguments.process(app);

    const QLocale locale = QLocale::system();
    QLocale::setDefault(locale);
    QApplication::setLayoutDirection(locale.textDirection());
    // The kit's few texts and our own; in a language that neither has, both are English.
    QTranslator kitTexts;
    QTranslator ownTexts;
    if (kitTexts.load(locale, QStringLiteral("parloquin"), QStringLiteral("_"),
            QStringLiteral(KIT_TRANSLATIONS)))
        QCoreApplication::installTranslator(&kitTexts);
    if (ownTexts.load(
            locale, QStringLiteral("demo"), QStringLiteral("_"), QStringLiteral(":/translations")))
        QCoreApplication::installTranslator(&ownTexts);
    // One look on every desktop; the pages and the kit bring their own shapes.
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font;
    font.setFamilies({ QStringLiteral("Inter"), QStringLiteral("Noto Sans Arabic") });
    QApplication::setFont(font);

    demo::DemoWindow window;
    window.show();
    if (!arguments.isSet(automatic))
        return QApplication::exec();

    const QString folder = arguments.value(automatic);
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "demo: cannot make the folder %s\n", qPrintable(folder));
        return 1;
    }
    std::optional<demo::Recorder> recorder;
    if (arguments.isSet(record))
        recorder.emplace(window, arguments.value(record));
    demo::AutoPlayer player(window, folder, recorder ? 700ms : 0ms);
    int outcome = 1;
    QTimer::singleShot(0, &player, [&] {
        outcome = player.play() ? 0 : 1;
        QCoreApplication::exit(outcome);
    });
    QApplication::exec();
    return outcome;
}
