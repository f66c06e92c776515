// What every call must have beside its row: a golden request, a made-up answer, a form at the
// service.
#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "Parloquin/Networking/Router/ApiRouter.h"
#include "sandbox/service/CallForm.h"

#include <QtCore/QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace parloquin;

namespace {

template <class Model> std::vector<const char *> keysOf()
{
    return std::apply(
        [](const auto &...fields) { return std::vector<const char *> { fields.key... }; },
        Model::fields());
}

template <class Model> QString faultOf(const QByteArray &answer)
{
    QString fault;
    (void)decode<BaseResponseModel<Model>>(answer, &fault);
    return fault;
}

struct Call {
    ApiRouter::Route route;
    const char *name;
    const char *path;
    std::vector<const char *> keys;
    QString (*faultOf)(const QByteArray &answer);
};

const Call calls[] = {
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    { ApiRouter::Route::name, #name, path, keysOf<RequestModel>(), faultOf<ResponseModel> },
    PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW
};

QByteArray contentsOf(const QString &file)
{
    QFile opened(QStringLiteral(FOLDER) + file);
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

void PrintTo(const Call &call, std::ostream *out) { *out << call.path; }

class EachCall : public testing::TestWithParam<Call> { };

TEST_P(EachCall, HasAGoldenRequest)
{
    const QByteArray lines = contentsOf(QStringLiteral("Requests.txt"));
    EXPECT_TRUE(lines.contains(QByteArray("\n") + GetParam().path + ' '))
        << "Requests.txt has no line for " << GetParam().path;
}

TEST_P(EachCall, HasAMadeUpAnswerToBeginWith)
{
    const QByteArray seed =
        contentsOf(QStringLiteral("../fuzz/seeds/Models/") + QLatin1String(GetParam().path));
    ASSERT_FALSE(seed.isEmpty()) << "fuzz/seeds/Models has no answer of " << GetParam().path;
    EXPECT_EQ(seed[0] - '0', static_cast<int>(GetParam().route))
        << "its first character is the row of the call";
    EXPECT_EQ(GetParam().faultOf(seed.sliced(1)), QString());
}

TEST_P(EachCall, HasAFormAtTheLocalService)
{
    ASSERT_TRUE(sandbox::isCall(GetParam().path))
        << "the service knows no call " << GetParam().path;
    for (const char *key : GetParam().keys) {
        const auto fault = sandbox::faultOfParameters(GetParam().path, { { key, "x" } });
        EXPECT_TRUE(!fault || fault->find("not a key") == std::string::npos) << *fault;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, EachCall, testing::ValuesIn(calls),
    [](const auto &row) { return std::string(row.param.name); });

TEST(LocalService, KnowsNoCallThatTheKitHasNot)
{
    for (const std::string_view name : sandbox::callNames) {
        EXPECT_TRUE(std::any_of(std::begin(calls), std::end(calls), [&](const Call &call) {
            return call.path == name;
        })) << name;
    }
}

} // namespace
