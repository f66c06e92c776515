// Messages without a network: a model to the request that is ready to be sent, an encrypted body to
// filled structs. Processor time of one thread.
#include "ByHand.h"
#include "Families.h"
#include "Inputs.h"
#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Router/ApiRouter.h"

#include <QtCore/QJsonDocument>

#include <benchmark/benchmark.h>

#include <map>
#include <string>

using namespace parloquin;

namespace {

/// Takes one input after another: the same one again and again would teach the processor its
/// branches.
template <class Inputs, class Work>
void run(benchmark::State &state, const Inputs &inputs, const Work &work)
{
    std::size_t next = 0;
    for (auto _ : state) {
        work(inputs[next]);
        next = (next + 1) % inputs.size();
    }
}

void addRequests(const std::string &name, int size, unsigned count)
{
    std::vector<StartRequestModel> models;
    for (unsigned seed = 0; seed < count; ++seed)
        models.push_back(Inputs::startRequest(seed, size));
    benchmark::RegisterBenchmark((name + "/kit").c_str(), [models](benchmark::State &state) {
        run(state, models, [](const StartRequestModel &model) {
            benchmark::DoNotOptimize(ApiRouter::start(model).asURLRequest());
        });
    });
    benchmark::RegisterBenchmark((name + "/floor").c_str(), [models](benchmark::State &state) {
        run(state, models, [](const StartRequestModel &model) {
            const ByHand::Request request = ByHand::request(model, ByHand::keys());
            ByHand::print(request);
            benchmark::DoNotOptimize(request);
        });
    });
}

void addAnswers(const std::string &name, int countries, unsigned count)
{
    struct Answer {
        QByteArray plain;
        QByteArray wire;
    };
    std::vector<Answer> answers;
    for (unsigned seed = 0; seed < count; ++seed) {
        const QJsonObject envelope = Inputs::countryAnswer(seed, countries);
        answers.push_back({ jsonText(envelope), Inputs::encrypted(envelope) });
    }
    benchmark::RegisterBenchmark((name + "/kit").c_str(), [answers](benchmark::State &state) {
        run(state, answers, [&state](const Answer &answer) {
            const auto plain = ApiResponseHelper().getData(answer.wire);
            const auto model = decode<BaseResponseModel<CountryResponseModel>>(*plain);
            if (!model || model->result->list->isEmpty())
                state.SkipWithError("not decoded");
        });
    });
    benchmark::RegisterBenchmark((name + "/floor").c_str(), [answers](benchmark::State &state) {
        run(state, answers, [](const Answer &answer) {
            benchmark::DoNotOptimize(QJsonDocument::fromJson(answer.plain));
        });
    });
}

class Collector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context & /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred)
                qFatal("%s: %s", run.benchmark_name().c_str(), run.error_message.c_str());
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.function_name].push_back(run.GetAdjustedCPUTime() / 1000);
        }
    }

    std::map<std::string, Samples> times; // microseconds
};

} // namespace

void measureMessages(Report &report)
{
    constexpr int megabyte = 1000000;
    const int perMegabyte =
        megabyte * 1000 / static_cast<int>(jsonText(Inputs::countryAnswer(0, 1000)).size());
    const struct {
        std::string name;
        double goal;
    } cases[] = {
        { "request of 3 fields : by hand", 2 },
        { "request of 64 KiB : by hand", 2 },
        { "answer of 250 countries : QJsonDocument", 0.6 },
        { "answer of 5 MB : QJsonDocument", 0.6 },
    };
    addRequests(cases[0].name, 280, 64);
    addRequests(cases[1].name, 65536, 16);
    addAnswers(cases[2].name, 250, 16);
    addAnswers(cases[3].name, 5 * perMegabyte, 3);

    // Repetitions of all come mixed, so that a busy moment of the machine hits kit and floor.
    std::string arguments[] = { "benchmarks", "--benchmark_enable_random_interleaving=true",
        "--benchmark_repetitions=" + std::to_string(report.rounds(50)),
        "--benchmark_min_time=0.02" };
    std::vector<char *> argv;
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    auto argc = static_cast<int>(argv.size());
    argv.push_back(nullptr);
    benchmark::Initialize(&argc, argv.data());
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const auto &[name, goal] : cases) {
        report.addMedians(QString::fromStdString(name), collector.times[name + "/kit"],
            collector.times[name + "/floor"], QStringLiteral("µs"), goal);
    }
}
