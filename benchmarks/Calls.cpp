// Whole calls over loopback: from the request on the main thread to its completion on the session's
// thread, one after another, a hundred at once, and the first of a process.
#include "BareSession.h"
#include "BlockingSession.h"
#include "Families.h"
#include "Inputs.h"
#include "Parloquin/Networking/Model/Response/StartResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Networking/Router/ApiRouter.h"
#include "Parloquin/Parloquin.h"
#include "Probe.h"
#include "Service.h"

#include <QtCore/QSemaphore>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

#include <memory>

using namespace parloquin;

namespace {

constexpr int bodyBytes = 400; // on the wire, each way
constexpr int plainBytes = (bodyBytes - 11) / 4 * 3 - 8; // less Base64, its envelope, the padding
constexpr unsigned variants = 64;
constexpr double microsecond = 1000; // ns

std::vector<Service::Answer> answers()
{
    std::vector<Service::Answer> all;
    for (unsigned seed = 0; seed < variants; ++seed)
        all.push_back({ "start", Inputs::encrypted(Inputs::startAnswer(seed, plainBytes)) });
    return all;
}

/// Kit and floor behind one face.
class Caller {
public:
    virtual ~Caller() = default;
    /// `done` runs on the session's thread, with whether the answer is the one expected.
    virtual void call(unsigned variant, std::function<void(bool)> done) = 0;
};

std::vector<StartRequestModel> requests()
{
    std::vector<StartRequestModel> all;
    for (unsigned seed = 0; seed < variants; ++seed)
        all.push_back(Inputs::startRequest(seed, plainBytes));
    return all;
}

class KitCaller : public Caller {
public:
    void call(unsigned variant, std::function<void(bool)> done) override
    {
        ApiRequest::start(m_requests[variant],
            [done = std::move(done)](const Result<StartResponseModel> &result) {
                done(result.response() && result.response()->result->reference);
            });
    }

private:
    const std::vector<StartRequestModel> m_requests = requests();
};

class BareCaller : public Caller {
public:
    void call(unsigned variant, std::function<void(bool)> done) override
    {
        m_session.post(m_bodies[variant], [done = std::move(done)](const QByteArray &body) {
            done(body.size() > bodyBytes * 9 / 10);
        });
    }

private:
    const std::vector<QByteArray> m_bodies = [] {
        std::vector<QByteArray> all;
        for (const StartRequestModel &request : requests())
            all.push_back(*ApiRouter::start(request).asURLRequest().body);
        return all;
    }();
    BareSession m_session;
};

class BlockingCaller : public Caller {
public:
    void call(unsigned variant, std::function<void(bool)> done) override
    {
        m_session.start(m_requests[variant],
            [done = std::move(done)](const QByteArray &reference) { done(!reference.isEmpty()); });
    }

private:
    const std::vector<StartRequestModel> m_requests = requests();
    BlockingSession m_session;
};

/// \return microseconds from the first request to the last completion
double time(Caller &caller, unsigned firstVariant, int calls)
{
    QSemaphore through;
    double end = 0; // written by one thread, the last time before the last release
    const double start = clockNow();
    for (int i = 0; i < calls; ++i) {
        caller.call((firstVariant + static_cast<unsigned>(i)) % variants, [&](bool isRight) {
            if (!isRight)
                qFatal("a call without its answer");
            end = clockNow();
            through.release();
        });
    }
    through.acquire(calls);
    return (end - start) / microsecond;
}

struct Pair {
    Samples kit;
    Samples bare;
};

Pair takeTurns(Caller &kit, Caller &bare, int rounds, int calls)
{
    constexpr int warmUp = 20;
    Pair pair;
    for (int round = 0; round < rounds + warmUp; ++round) {
        const auto variant = static_cast<unsigned>(round) % variants;
        const bool kitFirst = round % 2 == 0;
        const double first = time(kitFirst ? kit : bare, variant, calls);
        const double second = time(kitFirst ? bare : kit, variant, calls);
        if (round < warmUp)
            continue;
        pair.kit.push_back(kitFirst ? first : second);
        pair.bare.push_back(kitFirst ? second : first);
    }
    return pair;
}

} // namespace

void measureCalls(Report &report)
{
    const Service service(answers());
    KitCaller kit;
    BareCaller bare;
    BlockingCaller blocking;
    const QString us = QStringLiteral("µs");

    const Pair one = takeTurns(kit, bare, report.rounds(5000), 1);
    report.addMedians(
        QStringLiteral("whole call, median : bare manager"), one.kit, one.bare, us, 0.85);
    report.add(QStringLiteral("whole call, 99th percentile : bare manager"),
        quantile(one.kit, 0.99), quantile(one.bare, 0.99), us, 1.15);

    const Pair limit = takeTurns(kit, blocking, report.rounds(5000), 1);
    report.addMedians(
        QStringLiteral("whole call, median : blocking socket"), limit.kit, limit.bare, us, 2);

    Pair first;
    for (int round = 0; round < report.rounds(60); ++round) {
        first.kit.push_back(firstCall(true));
        first.bare.push_back(firstCall(false));
    }
    report.addMedians(
        QStringLiteral("first call of a process : bare manager"), first.kit, first.bare, us, 1.25);

    const Pair many = takeTurns(kit, bare, report.rounds(60), 100);
    report.addMedians(
        QStringLiteral("100 calls at once : bare manager"), many.kit, many.bare, us, 0.65);
}

double firstCall(bool withKit)
{
    return probe("parloquin-benchmarks",
        { QStringLiteral("--child"),
            withKit ? QStringLiteral("first-call-kit")
                    : QStringLiteral("first-call-bare") })[u"time"]
        .toDouble();
}

QJsonObject childFirstCall(const QString &name)
{
    const bool withKit = name == u"first-call-kit";
    // What both have by then: the kit's container or the bare manager, and a window of the host's.
    const std::unique_ptr<QWidget> container(
        withKit ? Parloquin().viewControllerForLogin() : nullptr);
    const std::unique_ptr<Caller> caller = withKit
        ? std::unique_ptr<Caller>(std::make_unique<KitCaller>())
        : std::make_unique<BareCaller>();
    QLabel window(QStringLiteral("A host"));
    window.resize(390, 844);
    window.show();
    window.repaint();
    QCoreApplication::processEvents();
    return { { QStringLiteral("time"), time(*caller, 0, 1) } };
}
