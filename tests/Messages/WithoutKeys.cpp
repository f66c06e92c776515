#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Router/ApiRouter.h"
#include "support/Console.h"

#include <gtest/gtest.h>

// HOST, the suite of each program of this file, is set where the programs are listed.

using namespace parloquin;

namespace {

TEST(HOST, SendsANullBodyThatIsSignedAllTheSame)
{
    UrlRequest request;
    const auto console = QByteArray::fromStdString(
        printedBy([&] { request = ApiRouter::check({ QStringLiteral("r") }).asURLRequest(); }));

    EXPECT_EQ(request.body, R"({"data":null})");
    EXPECT_EQ(console.count("Encrypt Error: 'Encrypt key null'"), 1);
    EXPECT_EQ(request.header("X-TRZ-Encrypted"), "1");
    EXPECT_EQ(request.header("X-TRZ-Req-Signature").value_or("").size(), 44);
    EXPECT_EQ(request.timeout.count(), 60'000) << "ms, which a slow network needs";
    // Sent empty, not left out: a null value would be dropped by the network stack.
    const auto clientKey = request.header("X-TRZ-Client-Key");
    ASSERT_TRUE(clientKey);
    EXPECT_TRUE(clientKey->isEmpty());
    EXPECT_FALSE(clientKey->isNull());
}

TEST(HOST, ReadsNoEncryptedAnswer)
{
    std::optional<QByteArray> text;
    const auto console = QByteArray::fromStdString(
        printedBy([&] { text = EncryptManager::shared().decrypt("PCn32vl2nKe93hNwJLVXSA=="); }));
    EXPECT_EQ(text, std::nullopt);
    EXPECT_EQ(console.count("Decrypt Error: 'Decrypt key null'"), 1);
}

} // namespace
