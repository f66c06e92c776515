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
    const char *path;
    std::vector<const char *> keys;
    QString (*faultOf)(const QByteArray &answer);
};

const Call calls[] = {
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    { ApiRouter::Route::name, path, keysOf<RequestModel>(), faultOf<ResponseModel> },
    PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW
};

QByteArray contentsOf(const QString &file)
{
    QFile opened(QStringLiteral(FOLDER) + file);
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

TEST(EachCall, HasAGoldenRequestAMadeUpAnswerAndAFormAtTheLocalService)
{
    const QByteArray lines = contentsOf(QStringLiteral("Requests.txt"));
    for (const Call &call : calls) {
        SCOPED_TRACE(call.path);
        EXPECT_TRUE(lines.contains(QByteArray("\n") + call.path + ' '))
            << "Requests.txt has no line for it";
        const QByteArray seed =
            contentsOf(QStringLiteral("../fuzz/seeds/Models/") + QLatin1String(call.path));
        EXPECT_EQ(seed.left(1), QByteArray::number(static_cast<int>(call.route)))
            << "fuzz/seeds/Models has no answer of it, with the row of the call in front";
        EXPECT_EQ(call.faultOf(seed.mid(1)), QString());
        EXPECT_TRUE(sandbox::isCall(call.path)) << "the service knows no such call";
        for (const char *key : call.keys) {
            const auto fault = sandbox::faultOfParameters(call.path, { { key, "x" } });
            EXPECT_TRUE(!fault || fault->find("not a key") == std::string::npos) << *fault;
        }
    }
}

TEST(LocalService, KnowsNoCallThatTheKitHasNot)
{
    for (const std::string_view name : sandbox::callNames) {
        EXPECT_TRUE(std::any_of(std::begin(calls), std::end(calls), [&](const Call &call) {
            return call.path == name;
        })) << name;
    }
}

} // namespace
