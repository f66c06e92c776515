// Containers as a host sees them: from the start of the process to the first app list, and a
// thousand of them opened and closed.
#include "Families.h"
#include "FirstPaint.h"
#include "Inputs.h"
#include "Parloquin/Parloquin.h"
#include "Probe.h"
#include "Service.h"

#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <malloc.h>

namespace {

double firstPaint(const char *program)
{
    constexpr double millisecond = 1e6; // ns
    const QJsonObject result = probe(program, {});
    return (result[u"at"].toDouble() - result[u"spawnedAt"].toDouble()) / millisecond;
}

void openAndClose()
{
    QEventLoop loop;
    ParloquinViewController *const container = Parloquin().viewControllerForLogin();
    container->setAttribute(Qt::WA_DeleteOnClose);
    const FirstPaint painted(QStringLiteral("ThirdPartyKitTableCell"), [&] { loop.quit(); });
    container->resize(390, 844);
    container->show();
    loop.exec();
    container->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

double entries(const QString &folder)
{
    return static_cast<double>(
        QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

QJsonObject resources()
{
    QEventLoop loop; // sockets and threads of what has ended take a moment to go
    QTimer::singleShot(500, &loop, &QEventLoop::quit);
    loop.exec();
    const struct mallinfo2 heap = ::mallinfo2();
    constexpr double kilobyte = 1000;
    return { { QStringLiteral("memory"),
                 static_cast<double>(heap.uordblks + heap.hblkhd) / kilobyte },
        { QStringLiteral("descriptors"), entries(QStringLiteral("/proc/self/fd")) },
        { QStringLiteral("threads"), entries(QStringLiteral("/proc/self/task")) } };
}

} // namespace

QJsonObject childContainers()
{
    constexpr int all = 1000;
    constexpr int few = 100;
    QJsonObject result;
    for (int i = 0; i < all; ++i) {
        if (i == few)
            result.insert(QStringLiteral("few"), resources());
        openAndClose();
    }
    result.insert(QStringLiteral("all"), resources());
    return result;
}

void measureContainers(Report &report)
{
    const Service service({ { "init", Inputs::encrypted(Inputs::initAnswer()) },
        { "start", Inputs::encrypted(Inputs::startAnswer(0, 280)) } });
    constexpr double millisecond = 1000; // µs
    Samples kit;
    Samples bare;
    Samples answers;
    for (int round = 0; round < report.rounds(50); ++round) {
        kit.push_back(firstPaint("parloquin-benchmark-start-kit"));
        bare.push_back(firstPaint("parloquin-benchmark-start-bare"));
        answers.push_back(firstCall(false) / millisecond);
    }
    const double answer = median(answers);
    report.add(QStringLiteral("start to app list, less the answer : to a label"),
        median(kit) - answer, median(bare), QStringLiteral("ms"), 1.4);
    report.note(QStringLiteral("The answer taken off the start: %1 ms, a bare first call.")
                    .arg(answer, 0, 'f', 2));

    // glibc counts as used what each thread keeps of freed blocks, up to 200 kB in a thread.
    qputenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0");
    const QJsonObject result =
        probe("parloquin-benchmarks", { QStringLiteral("--child"), QStringLiteral("containers") });
    qunsetenv("GLIBC_TUNABLES");
    const struct {
        const char *what;
        const char *unit;
        double goal; // the heap breathes by a few blocks that Qt caches
    } rows[] = { { "memory", "kB", 1.01 }, { "descriptors", "", 1 }, { "threads", "", 1 } };
    for (const auto &row : rows) {
        const QString what = QLatin1String(row.what);
        report.add(QStringLiteral("1,000 containers, %1 : after 100").arg(what),
            result[u"all"][what].toDouble(), result[u"few"][what].toDouble(),
            QLatin1String(row.unit), row.goal);
    }
}
