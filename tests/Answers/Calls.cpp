#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "Parloquin/Networking/Router/ApiRouter.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

/// Among the kept inputs of the fuzzer, with the row of the call in front.
template <class Model> void expectSeed(ApiRouter::Route route, const char *call)
{
    SCOPED_TRACE(call);
    QFile seed(QStringLiteral(FOLDER "../fuzz/seeds/Models/") + QLatin1String(call));
    ASSERT_TRUE(seed.open(QIODevice::ReadOnly)) << "there is no answer of it";
    EXPECT_EQ(seed.read(1), QByteArray::number(static_cast<int>(route)));
    const QByteArray body = seed.readAll();
    const auto model = decode<BaseResponseModel<Model>>(body);
    ASSERT_TRUE(model);
    EXPECT_EQ(dictionary(*model), QJsonDocument::fromJson(body).object()); // every field
}

TEST(EachCall, HasAMadeUpAnswer)
{
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    expectSeed<ResponseModel>(ApiRouter::Route::name, path);
    PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW
}

} // namespace
