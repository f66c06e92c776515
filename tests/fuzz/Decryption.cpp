// What is encrypted for a host's key, against a second library and after damage.
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Platform/Crypto.h"
#include "fuzz/Fuzz.h"
#include "sandbox/service/Cipher.h"

#include <QtCore/QStringDecoder>

using namespace parloquin;

namespace {

bool isUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return !decoder.hasError() && !text.isNull();
}

bool same(const std::optional<QByteArray> &mine, const std::optional<std::string> &theirs)
{
    return mine.has_value() == theirs.has_value() && (!mine || mine->toStdString() == *theirs);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const std::string theirs = bytes.toStdString();
    const QByteArray key =
        QByteArray::fromHex("8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e");
    const std::string theirKey = key.toStdString();

    const auto decoded = Crypto::fromBase64(bytes);
    require(same(decoded, sandbox::fromBase64(theirs)), "Base64 is read alike");
    require(!decoded || Crypto::toBase64(*decoded) == bytes, "one spelling for the same bytes");
    require(same(Crypto::aesDecrypt(bytes, key), sandbox::decrypt(theirs, theirKey)),
        "cipher text is read alike");
    require(same(Crypto::hmacSha256(bytes, key), sandbox::hmacSha256(theirs, theirKey)),
        "signatures agree");
    for (const qsizetype length : { 16, 24, 32 }) {
        const auto cipherText = Crypto::aesEncrypt(bytes, key.left(length));
        require(cipherText && Crypto::aesDecrypt(*cipherText, key.left(length)) == bytes,
            "what is encrypted is decrypted");
    }

    // As an answer's body: as it is, and as the cipher text of a body.
    const ApiResponseHelper helper;
    const auto read = helper.getData(bytes);
    require(!read || isUtf8(*read), "text or nothing");
    QByteArray cipherText =
        Crypto::toBase64(QByteArray::fromStdString(sandbox::encrypt(theirs, theirKey)));
    const auto body = [&cipherText] { return "{\"data\":\"" + cipherText + "\"}"; };
    const auto plain = helper.getData(body());
    require(plain ? *plain == bytes : !isUtf8(bytes), "every text comes through");
    cipherText[static_cast<qsizetype>(size) % cipherText.size()] ^= 1;
    const auto damaged = helper.getData(body());
    require(!damaged || (*damaged != bytes && isUtf8(*damaged)), "damage shows");

    const QJsonObject parameters { { QStringLiteral("text"), QString::fromUtf8(bytes) } };
    const auto sent = EncryptManager::shared().encrypt(parameters);
    require(sent && EncryptManager::shared().decrypt(sent->toLatin1()) == jsonText(parameters),
        "a request's own body is readable");
    return 0;
}
