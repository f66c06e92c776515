#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Router/ApiRouter.h"

#include <gtest/gtest.h>

// HOST, the suite of each program of this file, is set where the programs are listed.

using namespace parloquin;

namespace {

TEST(HOST, SendsANullBodyThatIsSignedAllTheSame)
{
    testing::internal::CaptureStdout();
    const UrlRequest request = ApiRouter::check({ QStringLiteral("r") }).asURLRequest();
    const auto console = QByteArray::fromStdString(testing::internal::GetCapturedStdout());

    EXPECT_EQ(request.body, R"({"data":null})");
    EXPECT_EQ(console.count("Encrypt Error: 'Encrypt key null'"), 1);
    EXPECT_EQ(request.header("X-TRZ-Encrypted"), "1");
    EXPECT_EQ(request.header("X-TRZ-Req-Signature").value_or("").size(), 44);
    // Sent empty, not left out: a null value would be dropped by the network stack.
    const auto clientKey = request.header("X-TRZ-Client-Key");
    ASSERT_TRUE(clientKey);
    EXPECT_TRUE(clientKey->isEmpty());
    EXPECT_FALSE(clientKey->isNull());
}

TEST(HOST, ReadsNoEncryptedAnswer)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(EncryptManager::shared().decrypt("PCn32vl2nKe93hNwJLVXSA=="), std::nullopt);
    const auto console = QByteArray::fromStdString(testing::internal::GetCapturedStdout());
    EXPECT_EQ(console.count("Decrypt Error: 'Decrypt key null'"), 1);
}

} // namespace
