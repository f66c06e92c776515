// What is encrypted and signed for a host's key, against a second library and after damage.
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Platform/Crypto.h"
#include "fuzz/Fuzz.h"
#include "sandbox/service/Cipher.h"

using namespace parloquin;

namespace {

const QByteArray secret = QByteArray::fromHex(
    "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"); // the host's
const std::string theirSecret = secret.toStdString();

bool isUtf8(const QByteArray &bytes)
{
    const QByteArray text = '.' + bytes; // a mark of the encoding would be dropped in front
    return QString::fromUtf8(text).toUtf8() == text;
}

bool same(const std::optional<QByteArray> &mine, const std::optional<std::string> &theirs)
{
    return mine.has_value() == theirs.has_value() && (!mine || mine->toStdString() == *theirs);
}

void readBase64(const QByteArray &text)
{
    const auto bytes = Crypto::fromBase64(text);
    require(same(bytes, sandbox::fromBase64(text.toStdString())), "Base64 is read alike");
    require(!bytes || Crypto::toBase64(*bytes) == text, "and is the one text of its bytes");
}

void agreeOn(const QByteArray &message)
{
    const std::string theirs = message.toStdString();
    const QByteArray key = Crypto::hmacSha256(message, "key"); // another for each
    const std::string theirKey = key.toStdString();
    const QByteArray cipherText = Crypto::aesEncrypt(message, key).value_or(QByteArray());
    require(same(cipherText, sandbox::encrypt(theirs, theirKey)), "the same cipher text");
    require(Crypto::aesDecrypt(cipherText, key) == message, "the kit reads its own");
    require(Crypto::aesDecrypt(cipherText, key.first(31)) == std::nullopt, "a key has 32 bytes");
    require(same(Crypto::hmacSha256(message, message), sandbox::hmacSha256(theirs, theirs)),
        "the same code, however long the key");
    const QByteArray text = Crypto::toBase64(message);
    require(text.toStdString() == sandbox::toBase64(theirs), "the same Base64");
    readBase64(text);

    // A body's data: of a text that may have every control character, quote and slash there is.
    const QJsonObject body { { QStringLiteral("t"), QString::fromLatin1(message) } };
    const std::string json = jsonText(body).toStdString();
    const auto data = sandbox::toBase64(sandbox::encrypt(json, theirSecret));
    require(EncryptManager::shared().encrypt(body) == QString::fromStdString(data), "a body");
    require(same(EncryptManager::shared().decrypt(QByteArrayView(data)), json), "a body's text");
}

/// Two blocks of nothing else; the block that says so is cut off.
void readPadding(char byte)
{
    const QByteArray all(32, byte);
    const auto text = Crypto::aesDecrypt(Crypto::aesEncrypt(all, secret)->chopped(16), secret);
    const bool isRight = byte >= 1 && byte <= 16;
    require(text == (isRight ? std::optional(all.chopped(byte)) : std::nullopt), "a block at most");
}

} // namespace

void fuzz(const QByteArray &bytes)
{
    for (const QByteArray &text : bytes.split('|'))
        readBase64(text);
    require(
        same(Crypto::aesDecrypt(bytes, secret), sandbox::decrypt(bytes.toStdString(), theirSecret)),
        "cipher text is read alike");
    agreeOn(bytes);
    for (qsizetype size = 0; size < std::min<qsizetype>(bytes.size(), 100); ++size) {
        agreeOn(bytes.first(size)); // every length around a block's
        readPadding(bytes[size]);
    }
    QByteArray text = Crypto::toBase64(bytes.first(std::min<qsizetype>(bytes.size(), 4)));
    for (char &each : text) {
        const char right = each;
        for (int byte = 0; byte < 256; ++byte) {
            each = static_cast<char>(byte);
            readBase64(text);
        }
        each = right;
    }

    // As a body, and as the text of a body.
    const ApiResponseHelper helper;
    require(isUtf8(helper.getData(bytes).value_or(QByteArray())), "text or nothing");
    auto cipherText = Crypto::toBase64(
        QByteArray::fromStdString(sandbox::encrypt(bytes.toStdString(), theirSecret)));
    const auto read = [&] { return helper.getData("{\"data\":\"" + cipherText + "\"}"); };
    const auto plain = read();
    require(plain ? *plain == bytes : !isUtf8(bytes), "every text comes through");
    cipherText[bytes.size() % cipherText.size()] ^= 1;
    const auto damaged = read();
    require(!damaged || (*damaged != bytes && isUtf8(*damaged)), "damage shows");
}
