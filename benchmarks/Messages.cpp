// Messages without a network: a model to the request that is ready to be sent, an encrypted body to
// filled structs. Processor time of one thread.
#include "Families.h"
#include "Inputs.h"
#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Router/ApiRouter.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonDocument>

#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <map>
#include <string>

using namespace parloquin;

namespace {

const QByteArray aesKey =
    QByteArray::fromHex("8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e");

void appendText(QByteArray &json, const QString &text)
{
    const QByteArray plain = text.toUtf8();
    const qsizetype start = json.size();
    json.resize(start + 2 * plain.size() + 2); // room for escaping every character
    char *to = json.data() + start;
    *to++ = '"';
    for (const char c : plain) {
        if (c == '"' || c == '\\' || c == '/')
            *to++ = '\\';
        *to++ = c;
    }
    *to++ = '"';
    json.resize(to - json.constData());
}

const unsigned char *bytes(const QByteArray &text)
{
    return reinterpret_cast<const unsigned char *>(text.constData());
}

/// The same body and signature by hand.
QByteArray bareRequest(const StartRequestModel &model, QByteArray *signature)
{
    QByteArray json = "{\"app\":";
    appendText(json, *model.app);
    json += ",\"countryCode\":";
    appendText(json, model.countryCode);
    json += ",\"installedApps\":";
    appendText(json, *model.installedApps);
    json += '}';

    QByteArray text = QByteArray::number(QDateTime::currentSecsSinceEpoch() * 1000) + '-' + json;
    text.replace("\\/", "/");
    const QByteArray key = "0123456789012345678901234567890123456789012345678901234567890123";
    unsigned char mac[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    HMAC(EVP_sha256(), key.constData(), static_cast<int>(key.size()), bytes(text),
        static_cast<size_t>(text.size()), mac, &size);
    signature->resize(static_cast<qsizetype>(size + 2) / 3 * 4);
    EVP_EncodeBlock(
        reinterpret_cast<unsigned char *>(signature->data()), mac, static_cast<int>(size));

    QByteArray cipherText(json.size() + 16, Qt::Uninitialized);
    auto *out = reinterpret_cast<unsigned char *>(cipherText.data());
    int written = 0;
    int last = 0;
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, EVP_aes_256_ecb(), nullptr, bytes(aesKey), nullptr);
    EVP_EncryptUpdate(context, out, &written, bytes(json), static_cast<int>(json.size()));
    EVP_EncryptFinal_ex(context, out + written, &last);
    EVP_CIPHER_CTX_free(context);

    constexpr int prefix = 9; // {"data":"
    QByteArray body((written + last + 2) / 3 * 4 + prefix + 2, Qt::Uninitialized);
    body.replace(0, prefix, "{\"data\":\"");
    EVP_EncodeBlock(reinterpret_cast<unsigned char *>(body.data()) + prefix, out, written + last);
    body.replace(body.size() - 2, 2, "\"}");
    return body;
}

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
            QByteArray signature;
            benchmark::DoNotOptimize(bareRequest(model, &signature));
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
        { "answer of 250 countries : QJsonDocument", 0.65 },
        { "answer of 5 MB : QJsonDocument", 0.65 },
    };
    addRequests(cases[0].name, 280, 64);
    addRequests(cases[1].name, 65536, 16);
    addAnswers(cases[2].name, 250, 16);
    addAnswers(cases[3].name, 5 * perMegabyte, 3);

    // Repetitions of all come mixed, so that a busy moment of the machine hits kit and floor.
    char arguments[][60] = { "benchmarks", "--benchmark_enable_random_interleaving=true",
        "--benchmark_repetitions=50", "--benchmark_min_time=0.02" };
    char *argv[] = { arguments[0], arguments[1], arguments[2], arguments[3], nullptr };
    int argc = 4;
    benchmark::Initialize(&argc, argv);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const auto &[name, goal] : cases) {
        report.addMedians(QString::fromStdString(name), collector.times[name + "/kit"],
            collector.times[name + "/floor"], QStringLiteral("µs"), goal);
    }
}
