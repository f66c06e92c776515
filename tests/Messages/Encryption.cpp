#include "Parloquin/Extension/String+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "support/Console.h"

#include <gtest/gtest.h>

using namespace parloquin;

namespace {

TEST(HexadecimalText, SkipsWhatIsNoDigitAndCutsRunsFromTheirStart)
{
    const std::pair<const char16_t *, const char *> rows[] = {
        { u"00ff", "00ff" },
        { u"aAbBfF", "aabbff" },
        { u"0x00ff", "0000ff" }, // the lone 0 in front of the x is a byte
        { u"abc", "ab0c" },
        { u"a b c", "0a0b0c" },
        { u"12-34:5", "123405" },
        { u"\u0661\uff11g7", "07" }, // digits of other scripts are none
        { u"\n  8f2d\n", "8f2d" },
    };
    for (const auto &[text, bytes] : rows)
        EXPECT_EQ(hexadecimal(text)->toHex(), bytes) << bytes;
    for (const char16_t *text : { u"", u"xyz", u" -" })
        EXPECT_EQ(hexadecimal(text), std::nullopt);
}

TEST(EncryptedAnswer, IsToldByItsFirstFlagInAnyCase)
{
    const ApiResponseHelper helper;
    const std::pair<HeaderFields, bool> rows[] = {
        { {}, false },
        { { { "X-TRZ-Encrypted", "1" } }, true },
        { { { "Date", "1" }, { "x-trz-encrypted", "1" } }, true },
        { { { "X-TRZ-ENCRYPTED", "0" }, { "X-TRZ-Encrypted", "1" } }, false },
        { { { "X-TRZ-Encrypted", "true" } }, false },
        { { { "X-TRZ-Encrypted", "01" } }, false },
        { { { "X-TRZ-Encrypted", "1 " } }, false },
        { { { "X-TRZ-Encrypted", "" } }, false },
        { { { "X-TRZ-Encryptedness", "1" } }, false },
    };
    for (const auto &[headers, isEncrypted] : rows)
        EXPECT_EQ(helper.checkResponseJsonEncryptedStatus(headers), isEncrypted);
    EXPECT_FALSE(helper.checkResponseJsonEncryptedStatus(std::nullopt));
}

// Computed by the openssl command under the key of support/Info.plist.
constexpr char envelope[] = R"({"meta":{"httpStatusCode":200}})";
constexpr char envelopeEncrypted[] = "Jj6RkUSCwTUow+XO+6WAoFN2qOivuVyUeGeZq+RblXs=";

QByteArray with(const QByteArray &data) { return R"({"data":")" + data + R"("})"; }

TEST(EncryptedBody, IsUnwrappedOnlyInItsExactForm)
{
    const std::pair<QByteArray, std::optional<QByteArray>> rows[] = {
        { with(envelopeEncrypted), envelope },
        { R"({"data":"CaP\/\/T5fCDtia9+q40LATg=="})", std::nullopt }, // not UTF-8
        { with("PCn32vl2nKe93hNwJLVXSA=="), QByteArray("") },
        { R"({"v":"2", "data":")" + QByteArray(envelopeEncrypted) + R"("})", envelope },
        { R"({"data":"x","data":")" + QByteArray(envelopeEncrypted) + R"("})", envelope },
        { R"({"code":5,"data":")" + QByteArray(envelopeEncrypted) + R"("})", {} },
        { R"({"data":")" + QByteArray(envelopeEncrypted) + R"(","a":null})", {} },
        { R"({"data":null})", {} },
        { R"({"date":"x"})", {} },
        { R"(["data"])", {} },
        { envelopeEncrypted, {} },
        { with(envelopeEncrypted) + "x", {} },
        { "", {} },
    };
    for (const auto &[body, plainText] : rows)
        EXPECT_EQ(ApiResponseHelper().getData(body), plainText) << body.constData();
}

TEST(Decryption, SaysTheSameWhateverFails)
{
    const QByteArray good = envelopeEncrypted;
    QByteArray swapped = QByteArray::fromBase64(good);
    std::swap_ranges(swapped.begin(), swapped.begin() + 16, swapped.begin() + 16);
    const QByteArray values[] = {
        "no base64!", // bad text
        good + '\n', // a blank too many
        "AAAA", // no whole block
        "", // no block
        good.first(20) + "AAA=", // a cut block
        "PCn32vl2nKe93hNwJLVXSB==", // bits left over
        swapped.toBase64(), // padding not at the end
        "N5ma3owkVR3q37f31jJYSg==", // another key
        "CaP//T5fCDtia9+q40LATg==", // decrypts, but not to UTF-8
    };
    for (const QByteArray &value : values) {
        std::optional<QByteArray> text;
        const auto console = printedBy([&] { text = EncryptManager::shared().decrypt(value); });
        EXPECT_EQ(text, std::nullopt) << value.constData();
        EXPECT_EQ(console,
            "\n\n[Parloquin]\n\u26A0\uFE0F\nDecrypt Error: 'The value cannot be decrypted'\n"
            "[Parloquin]\n\n\n")
            << value.constData();
    }
}

} // namespace
