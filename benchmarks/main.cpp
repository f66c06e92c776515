#include "Families.h"
#include "Quiet.h"

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    std::FILE *const out = quietOutput();
    const QApplication app(argc, argv);

    struct Family {
        QString name;
        void (*measure)(Report &);
    };
    const Family families[] = {
        { QStringLiteral("messages"), measureMessages },
        { QStringLiteral("library"), measureLibrary },
    };

    QCommandLineParser parser;
    const QCommandLineOption json(QStringLiteral("json"),
        QStringLiteral("Write the table to this file as well."), QStringLiteral("file"));
    parser.addOption(json);
    parser.addHelpOption();
    QStringList names;
    for (const Family &family : families)
        names.append(family.name);
    parser.addPositionalArgument(
        QStringLiteral("family"), names.join(QStringLiteral(", ")), QStringLiteral("[family...]"));
    parser.process(app);

    Report report;
    for (const Family &family : families) {
        const QStringList wanted = parser.positionalArguments();
        if (!wanted.isEmpty() && !wanted.contains(family.name))
            continue;
        std::fprintf(stderr, "%s\n", qPrintable(family.name));
        family.measure(report);
    }
    report.print(out);
    if (parser.isSet(json) && !report.writeJson(parser.value(json)))
        qFatal("cannot write %s", qPrintable(parser.value(json)));
    return 0;
}
