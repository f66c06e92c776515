#include "Parloquin/Platform/Crypto.h"

#include <gtest/gtest.h>
#include <openssl/err.h>

#include <string>

using namespace parloquin;

namespace {

QByteArray hex(const char *text) { return QByteArray::fromHex(text); }

// SP 800-38A, F.1: four blocks under each key size.
const char nistPlainText[] = "6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51"
                             "30c81c46a35ce411e5fbc1191a0a52eff69f2445df4f9b17ad2b417be66c3710";

struct AesRow {
    const char *name;
    const char *key;
    const char *cipherText;
};

const AesRow aesRows[] = {
    { "Aes128", "2b7e151628aed2a6abf7158809cf4f3c",
        "3ad77bb40d7a3660a89ecaf32466ef97f5d3d58503b9699de785895a96fdbaaf"
        "43b1cd7f598ece23881b00e3ed0306887b0c785e27e8ad3f8223207104725dd4" },
    { "Aes192", "8e73b0f7da0e6452c810f32b809079e562f8ead2522c6b7b",
        "bd334f1d6e45f25ff712a214571fa5cc974104846d0ad3ad7734ecb3ecee4eef"
        "ef7afd2270e2e60adce0ba2face6444e9a4b41ba738d6c72fb16691603c18e0e" },
    { "Aes256", "603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4",
        "f3eed1bdb5d2a03c064b5a7e3db181f8591ccb10d410ed26dc5ba74a31362870"
        "b6ed21b99ca6f4f9f153e7b1beafed1d23304b7a39f9f3ff067d8d8f9e24ecc7" },
};

class Aes : public testing::TestWithParam<AesRow> { };

TEST_P(Aes, AgreesWithThePublishedVectorsAndPadsToABlock)
{
    const QByteArray key = hex(GetParam().key);
    const auto cipherText = Crypto::aesEncrypt(hex(nistPlainText), key);
    ASSERT_TRUE(cipherText);
    EXPECT_EQ(cipherText->first(64).toHex(), GetParam().cipherText);
    for (int size = 0; size <= 33; ++size) {
        const QByteArray text(size, '\x01'); // the byte that padding may hold, too
        const auto padded = Crypto::aesEncrypt(text, key);
        ASSERT_EQ(padded.value_or("").size(), (size / 16 + 1) * 16);
        EXPECT_EQ(Crypto::aesDecrypt(*padded, key), text) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Nist, Aes, testing::ValuesIn(aesRows), [](const auto &row) { return row.param.name; });

TEST(Crypto, RefusesWhatCannotBeDecryptedAndLeavesNoErrorBehind)
{
    const QByteArray key = hex(aesRows[2].key);
    const QByteArray good = *Crypto::aesEncrypt("attack at dawn", key);
    QByteArray bent = good;
    bent[15] = static_cast<char>(bent[15] ^ 1);
    const std::pair<QByteArray, QByteArray> rows[] = { { {}, key }, { good.first(15), key },
        { good + 'x', key }, { bent, key }, { good, QByteArray(32, 'k') }, { good, key.first(31) },
        { good, {} } };

    // A host's TLS reads the same queue: its own error stays, ours never show.
    ERR_clear_error();
    ERR_raise(ERR_LIB_USER, 77);
    for (const auto &[cipherText, withKey] : rows)
        EXPECT_EQ(Crypto::aesDecrypt(cipherText, withKey), std::nullopt)
            << cipherText.toHex().constData();
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 77);
    EXPECT_EQ(ERR_get_error(), 0U);
}

TEST(Crypto, AuthenticatesAsPublished)
{
    // RFC 4231, cases 1, 2, 6 and 7: keys shorter and longer than a block.
    const QByteArray longKey(131, '\xaa');
    const std::tuple<QByteArray, QByteArray, const char *> rows[] = {
        { QByteArray(20, '\x0b'), "Hi There",
            "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7" },
        { "Jefe", "what do ya want for nothing?",
            "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843" },
        { longKey, "Test Using Larger Than Block-Size Key - Hash Key First",
            "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54" },
        { longKey,
            "This is a test using a larger than block-size key and a larger than block-size data. "
            "The key needs to be hashed before being used by the HMAC algorithm.",
            "9b09ffa71b942fcb27635fbcd5b0e944bfdc63644f0713938a7f51535c3a35e2" },
    };
    for (const auto &[key, text, mac] : rows)
        EXPECT_EQ(Crypto::hmacSha256(text, key)->toHex(), mac);
}

TEST(Crypto, WritesAndReadsBase64)
{
    const std::pair<QByteArray, const char *> rows[] = { { QByteArray("", 0), "" }, { "f", "Zg==" },
        { "fo", "Zm8=" }, { "foo", "Zm9v" }, { "foob", "Zm9vYg==" }, { hex("fbff00"), "+/8A" },
        { QByteArray(60, '\0'),
            "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA" } };
    for (const auto &[bytes, text] : rows) {
        EXPECT_EQ(Crypto::toBase64(bytes), text);
        EXPECT_EQ(Crypto::fromBase64(text), bytes) << text;
    }
    // Broken length or padding, foreign or stray signs, the URL alphabet, blanks, bits to spare.
    for (const char *text : { "Z", "Zg", "Zg=", "Zg===", "Z===", "====", "=Zm9", "Zm=v",
             "Zm9vZg==Zm9v", "Zm9v\n", " Zm9vZg=", "Zm9v  ==", "Zm9v----", "    Zm9v", "Zm9v    ",
             "Zm9v\r\n\r\n", "Zm 9", "Zm\n9", "-_8A", "Zh==", "Zm9=", "Zm\xc3\xa9" })
        EXPECT_EQ(Crypto::fromBase64(text), std::nullopt) << text;
    // Whatever is read is the one text of its bytes.
    for (int place = 0; place < 8; ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            QByteArray text = "Zm9vYg==";
            text[place] = static_cast<char>(byte);
            if (const auto bytes = Crypto::fromBase64(text)) {
                EXPECT_EQ(Crypto::toBase64(*bytes), text);
            }
        }
    }
}

} // namespace
