#include "Parloquin/Platform/Crypto.h"

#include <gtest/gtest.h>

#include <string>

using namespace parloquin;

namespace {

// What else cannot be decrypted is held against a second library, and by Decryption.
TEST(Crypto, RefusesAKeyOfAnotherLength)
{
    const QByteArray key(32, '\x60');
    const QByteArray good = *Crypto::aesEncrypt("attack at dawn", key);
    for (const qsizetype length : { 31, 0 })
        EXPECT_EQ(Crypto::aesDecrypt(good, key.first(length)), std::nullopt) << length;
}

TEST(Crypto, WritesAndReadsBase64)
{
    const std::pair<QByteArray, const char *> rows[] = { { QByteArray("", 0), "" }, { "f", "Zg==" },
        { "fo", "Zm8=" }, { "foo", "Zm9v" }, { "foob", "Zm9vYg==" },
        { QByteArray("\xfb\xff\0", 3), "+/8A" },
        { QByteArray(60, '\0'),
            "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA" } };
    for (const auto &[bytes, text] : rows) {
        EXPECT_EQ(Crypto::toBase64(bytes), text);
        EXPECT_EQ(Crypto::fromBase64(text), bytes) << text;
    }
    // Broken length or padding, foreign or stray signs, the URL alphabet, blanks, bits to spare.
    for (const char *text : { "Z", "Zg", "Zg=", "Zg===", "Z===", "====", "=Zm9", "Zm=v",
             "Zm9vZg==Zm9v", "Zm9vZ", "Zm9v\n", " Zm9vZg=", "Zm9v  ==", "Zm9v----", "    Zm9v",
             "Zm9v    ", "Zm9v\r\n\r\n", "Zm 9", "Zm\n9", "-_8A", "Zh==", "Zm9=", "Zm\xc3\xa9" })
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

TEST(Crypto, TakesNoPaddingButOfABlockAtMost)
{
    const QByteArray key(32, 'k');
    for (const int padding : { 0, 1, 16, 17, 32, 255 }) {
        // Two blocks of nothing else; the block that says so is cut off.
        const QByteArray all(32, static_cast<char>(padding));
        const QByteArray cipherText = Crypto::aesEncrypt(all, key)->chopped(16);
        const bool isRight = padding >= 1 && padding <= 16;
        EXPECT_EQ(Crypto::aesDecrypt(cipherText, key),
            isRight ? std::optional(all.chopped(padding)) : std::nullopt)
            << padding;
    }
}

} // namespace
