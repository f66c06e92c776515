#include "Families.h"
#include "Quiet.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonDocument>
#include <QtWidgets/QApplication>

namespace {

int runChild(std::FILE *out, const QStringList &words)
{
    const QJsonObject result = words[0] == u"containers" ? childContainers()
        : words[0] == u"picker"                          ? childPicker(words.last())
                                                         : childFirstCall(words[0]);
    std::fprintf(out, "%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    std::FILE *const out = quietOutput();
    const QApplication app(argc, argv);
    const QStringList words = QApplication::arguments();
    if (words.size() > 2 && words[1] == u"--child")
        return runChild(out, words.mid(2));

    struct Family {
        QString name;
        void (*measure)(Report &);
    };
    const Family families[] = {
        { QStringLiteral("calls"), measureCalls },
        { QStringLiteral("messages"), measureMessages },
        { QStringLiteral("containers"), measureContainers },
        { QStringLiteral("picker"), measurePicker },
        { QStringLiteral("library"), measureLibrary },
    };

    QCommandLineParser parser;
    const QCommandLineOption json(QStringLiteral("json"),
        QStringLiteral("Write the table to this file as well."), QStringLiteral("file"));
    parser.addOption(json);
    const QCommandLineOption svg(QStringLiteral("svg"),
        QStringLiteral("Draw the table in this file as well."), QStringLiteral("file"));
    parser.addOption(svg);
    const QCommandLineOption slow(QStringLiteral("slow"),
        QStringLiteral("The processor is held to a fifth: measure a fifth as often."));
    parser.addOption(slow);
    parser.addHelpOption();
    QStringList names;
    for (const Family &family : families)
        names.append(family.name);
    parser.addPositionalArgument(
        QStringLiteral("family"), names.join(QStringLiteral(", ")), QStringLiteral("[family...]"));
    parser.process(app);

    Report report(parser.isSet(slow));
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
    if (parser.isSet(svg) && !report.writePicture(parser.value(svg)))
        qFatal("cannot write %s", qPrintable(parser.value(svg)));
    return 0;
}
