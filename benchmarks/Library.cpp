// What the shared library costs a Qt Widgets host: bytes on the disk, time to load.
#include "Families.h"
#include "Probe.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>

#include <numeric>

namespace {

constexpr double kilobyte = 1000;

/// Milliseconds that loading each of these took, in a fresh process.
Samples load(const QStringList &libraries)
{
    Samples times;
    for (const QJsonValue time : probe("parloquin-benchmark-loader", libraries)[u"times"].toArray())
        times.push_back(time.toDouble());
    return times;
}

double sum(const Samples &times) { return std::accumulate(times.begin(), times.end(), 0.0); }

} // namespace

void measureLibrary(Report &report)
{
    const QString widgets = QStringLiteral(WIDGETS_LIBRARY);
    const QString kit = QStringLiteral(KIT_LIBRARY);
    const auto size = [](const QString &path) {
        return static_cast<double>(QFileInfo(path).size()) / kilobyte;
    };
    report.add(QStringLiteral("stripped library : libQt6Widgets"),
        size(QStringLiteral(KIT_LIBRARY_STRIPPED)), size(widgets), QStringLiteral("kB"), 0.085);

    // In this order each finds loaded what it shares with the ones before it.
    const QStringList parts { widgets, QStringLiteral("libQt6Svg.so.6"),
        QStringLiteral("libnettle.so.8"), QStringLiteral("libgio-2.0.so.0"),
        QStringLiteral("libsimdjson.so.14"), QStringLiteral("libplist-2.0.so.3"),
        QStringLiteral("libmnl.so.0"), kit };
    Samples withKit;
    Samples alone;
    std::vector<Samples> each(static_cast<std::size_t>(parts.size()));
    for (int round = 0; round < report.rounds(60); ++round) {
        withKit.push_back(sum(load({ widgets, kit })));
        alone.push_back(sum(load({ widgets })));
        const Samples times = load(parts);
        for (std::size_t part = 0; part < times.size(); ++part)
            each[part].push_back(times[part]);
    }
    report.addMedians(QStringLiteral("loading libQt6Widgets and the kit : the former"), withKit,
        alone, QStringLiteral("ms"), 1.35);

    QStringList costs;
    for (std::size_t part = 1; part < each.size(); ++part) {
        costs.append(QStringLiteral("%1 %2 ms")
                         .arg(QFileInfo(parts[static_cast<qsizetype>(part)]).fileName())
                         .arg(median(each[part]), 0, 'f', 2));
    }
    report.note(QStringLiteral("Loading on top of libQt6Widgets: %1.").arg(costs.join(u", ")));
}
