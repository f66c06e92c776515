#include "Report.h"

#include "Picture.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSysInfo>

#include <algorithm>
#include <cstdlib>
#include <thread>

namespace {

QString processor()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("model name"))
                return QString::fromLatin1(line.mid(line.indexOf(':') + 1).trimmed());
        }
    }
    return QSysInfo::currentCpuArchitecture();
}

/// Over the last minute: much above 1, and other work has had its share of the figures.
double load()
{
    double average = 0;
    return ::getloadavg(&average, 1) == 1 ? average : 0;
}

QString number(double value)
{
    const int decimals = value >= 1000 || value == static_cast<int>(value) ? 0 : 2;
    return QString::number(value, 'f', decimals);
}

} // namespace

double quantile(Samples samples, double share)
{
    if (samples.empty())
        qFatal("a case without samples");
    const auto at = static_cast<std::ptrdiff_t>(share * static_cast<double>(samples.size() - 1));
    std::nth_element(samples.begin(), samples.begin() + at, samples.end());
    return samples[static_cast<std::size_t>(at)];
}

Report::Report(bool isSlow)
    : m_isSlow(isSlow)
    , m_machine(
          QStringLiteral("%1, %2; %3; Qt %4; load at the start %5")
              .arg(processor(),
                  isSlow ? QStringLiteral("held to a fifth of a core")
                         : QStringLiteral("%1 cores").arg(std::thread::hardware_concurrency()))
              .arg(QSysInfo::prettyProductName(), QLatin1String(qVersion()), number(load())))
{
}

void Report::add(const QString &name, double kit, double floor, const QString &unit, double goal)
{
    m_rows.push_back({ name, kit, floor, unit, goal });
    std::fprintf(stderr, "  %s: %.2f\n", qPrintable(name), m_rows.back().ratio());
}

void Report::print(std::FILE *out) const
{
    const auto line = [out](const QString &name, const QStringList &cells) {
        QString text = QLatin1String("| ") + name.leftJustified(48) + QLatin1String(" |");
        for (const QString &cell : cells)
            text += QLatin1Char(' ') + cell.rightJustified(13) + QLatin1String(" |");
        std::fprintf(out, "%s\n", text.toUtf8().constData());
    };
    line(QStringLiteral("case"),
        { QStringLiteral("kit"), QStringLiteral("floor"), QStringLiteral("ratio"),
            QStringLiteral("goal"), QString() });
    line(QString(48, QLatin1Char('-')), QStringList(5, QString(13, QLatin1Char('-'))));
    for (const Row &row : m_rows) {
        const QString unit = QLatin1Char(' ') + row.unit;
        line(row.name,
            { number(row.kit) + unit, number(row.floor) + unit,
                QString::number(row.ratio(), 'f', 3), QStringLiteral("<= %1").arg(row.goal),
                row.isMet() ? QStringLiteral("met") : QStringLiteral("missed") });
    }
    std::fprintf(out, "\n");
    for (const QString &note : m_notes)
        std::fprintf(out, "- %s\n", note.toUtf8().constData());
    std::fprintf(out, "- Machine: %s, at the end %.2f.\n", m_machine.toUtf8().constData(), load());
}

bool Report::writeJson(const QString &path) const
{
    QJsonArray rows;
    for (const Row &row : m_rows) {
        rows.append(QJsonObject {
            { QStringLiteral("case"), row.name },
            { QStringLiteral("kit"), row.kit },
            { QStringLiteral("floor"), row.floor },
            { QStringLiteral("unit"), row.unit },
            { QStringLiteral("ratio"), row.ratio() },
            { QStringLiteral("goal"), row.goal },
            { QStringLiteral("met"), row.isMet() },
        });
    }
    const QJsonObject all {
        { QStringLiteral("machine"), m_machine },
        { QStringLiteral("date"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate) },
        { QStringLiteral("cases"), rows },
        { QStringLiteral("notes"), QJsonArray::fromStringList(m_notes) },
    };
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(all).toJson()) > 0;
}

bool Report::writePicture(const QString &path) const
{
    std::vector<PictureRow> rows;
    for (const Row &row : m_rows)
        rows.push_back({ row.name, row.ratio(), row.goal });
    QFile file(path);
    const QString day = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    return file.open(QIODevice::WriteOnly)
        && file.write(drawn(rows, m_machine + QStringLiteral("; ") + day)) > 0;
}
