// The picker of countries: 10,000 against 250 of them, each in a process of its own, and a scroll
// step against rows by bare widgets. A step moves by about a notch of the wheel and paints.
#include "BareRows.h"
#include "Families.h"
#include "Inputs.h"
#include "Parloquin/Controller/Base/ParloquinNavigationController.h"
#include "Parloquin/Controller/CountryListViewController.h"
#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Toolkit/NavigationController.h"
#include "Probe.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <memory>

using namespace parloquin;

namespace {

constexpr double microsecond = 1000; // ns
constexpr int phoneWidth = 390;
constexpr int phoneHeight = 844;

/// The picker without its call: given its answer instead, and asked when it reloads.
class Picker : public CountryListViewController {
public:
    using CountryListViewController::viewModel;

    void rebindData() override
    {
        reloadedAt = clockNow();
        CountryListViewController::rebindData();
    }

    double reloadedAt = 0;

protected:
    void setBinding() override { }
};

/// Paints at once what is to be painted.
void paint(QWidget *window)
{
    QCoreApplication::sendPostedEvents();
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(window, &request);
}

struct PickerWindow {
    explicit PickerWindow(QByteArray body)
        : container(new Screen)
    {
        container.resize(phoneWidth, phoneHeight);
        container.show();
        container.navigationController().pushViewController(picker, false);
        QCoreApplication::processEvents(); // exposed from here on
        paint(&container);

        body = ApiResponseHelper().getData(body).value();
        const auto answer = decode<BaseResponseModel<CountryResponseModel>>(body);
        body.clear(); // as the client does, before the completion runs
        answeredAt = clockNow();
        picker->viewModel->getCountries()(Result<CountryResponseModel>::success(answer.value()));
        table = picker->findChild<TableView *>();
        while (!table->cellForRow({ 0, 0 })) // a hand-over after another
            QCoreApplication::sendPostedEvents();
        paint(&container);
        paintedAt = clockNow();
    }

    ParloquinNavigationController container;
    Picker *picker = new Picker;
    TableView *table;
    double answeredAt;
    double paintedAt;
};

/// The same places for all: down by uneven steps, as fingers and wheels move.
std::vector<int> offsets()
{
    std::vector<int> all;
    for (int i = 1; i <= 100; ++i)
        all.push_back(all.empty() ? 50 : all.back() + 40 + i * 7 % 41);
    return all;
}

template <class Move> double step(QWidget *window, const Move &move)
{
    const double start = clockNow();
    move();
    paint(window);
    return (clockNow() - start) / microsecond;
}

double peakMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).chopped(2).trimmed().toDouble();
        }
    }
    qFatal("no peak memory");
}

void compareSteps(Report &report)
{
    const QByteArray wire = Inputs::encrypted(Inputs::countryAnswer(1, 250));
    const PickerWindow kit(wire);
    BareRows rows;
    rows.resize(kit.table->size());
    const auto &model = *kit.picker->viewModel;
    for (const QString &title : model.countrySectionTitleList) {
        std::vector<BareRows::Row> section;
        for (const CountryModel &country : model.countrySectionList[title])
            section.push_back({ *country.title, *country.phoneCode });
        rows.addSection(title, section);
    }
    QPalette white = rows.palette();
    white.setColor(QPalette::Window, Qt::white);
    rows.setPalette(white);
    rows.show();
    rows.setOffset(0);
    QCoreApplication::processEvents();
    paint(&rows);

    Samples kitSteps;
    Samples bareSteps;
    for (int round = 0; round < report.rounds(40); ++round) {
        for (const int offset : offsets()) {
            kitSteps.push_back(
                step(kit.table->window(), [&] { kit.table->setContentOffset(offset); }));
            bareSteps.push_back(step(&rows, [&] { rows.setOffset(offset); }));
        }
    }
    report.addMedians(QStringLiteral("scroll step : bare recycled rows"), kitSteps, bareSteps,
        QStringLiteral("µs"), 1.25);
}

} // namespace

QJsonObject childPicker(const QString &answerFile)
{
    QFile file(answerFile);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no answer");
    const PickerWindow window(file.readAll());
    Samples steps;
    for (int round = 0; round < 5; ++round) {
        for (const int offset : offsets())
            steps.push_back(
                step(window.table->window(), [&] { window.table->setContentOffset(offset); }));
    }
    return { { QStringLiteral("first paint"),
                 (window.paintedAt - window.picker->reloadedAt) / microsecond },
        { QStringLiteral("from answer"), (window.paintedAt - window.answeredAt) / microsecond },
        { QStringLiteral("step"), median(steps) },
        { QStringLiteral("peak memory"), peakMemory() } };
}

void measurePicker(Report &report)
{
    const QTemporaryDir folder;
    const QStringList files { folder.filePath(QStringLiteral("many")),
        folder.filePath(QStringLiteral("few")) };
    for (const QString &name : files) {
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write to %s", qPrintable(folder.path()));
        file.write(Inputs::encrypted(Inputs::countryAnswer(1, name == files[0] ? 10000 : 250)));
    }
    struct {
        const char *what;
        const char *unit;
        double goal;
        Samples many;
        Samples few;
    } rows[] = { { "first paint", "µs", 1.05, {}, {} }, { "step", "µs", 1.05, {}, {} },
        { "peak memory", "kB", 1.12, {}, {} }, { "from answer", "µs", 0, {}, {} } };
    for (int round = 0; round < report.rounds(25); ++round) {
        for (const QString &file : files) {
            const QJsonObject result = probe("parloquin-benchmarks",
                { QStringLiteral("--child"), QStringLiteral("picker"), file });
            for (auto &row : rows) {
                const double value = result[QLatin1String(row.what)].toDouble();
                (file == files[0] ? row.many : row.few).push_back(value);
            }
        }
    }
    for (const auto &row : { rows[0], rows[1], rows[2] }) {
        report.addMedians(QStringLiteral("10,000 countries, %1 : 250").arg(QLatin1String(row.what)),
            row.many, row.few, QString::fromUtf8(row.unit), row.goal);
    }
    report.note(QStringLiteral("From the decoded answer to the first paint, with the console lines "
                               "and the sorting: %1 µs for 10,000 countries, %2 µs for 250.")
                    .arg(median(rows[3].many), 0, 'f', 0)
                    .arg(median(rows[3].few), 0, 'f', 0));
    compareSteps(report);
}
