// What is encrypted for a host's key, against a second library and after damage.
#include "Parloquin/Networking/Helper/ApiResponseHelper.h"
#include "Parloquin/Platform/Crypto.h"
#include "fuzz/Fuzz.h"
#include "sandbox/service/Cipher.h"

using namespace parloquin;

namespace {

bool isUtf8(const QByteArray &bytes)
{
    const QByteArray text = '.' + bytes; // a mark of the encoding would be dropped in front
    return QString::fromUtf8(text).toUtf8() == text;
}

bool same(const std::optional<QByteArray> &mine, const std::optional<std::string> &theirs)
{
    return mine.has_value() == theirs.has_value() && (!mine || mine->toStdString() == *theirs);
}

} // namespace

void fuzz(const QByteArray &bytes)
{
    const std::string theirs = bytes.toStdString();
    const QByteArray key = QByteArray::fromHex(
        "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"); // the host's
    const std::string theirKey = key.toStdString();

    require(same(Crypto::fromBase64(bytes), sandbox::fromBase64(theirs)), "Base64 is read alike");
    require(same(Crypto::aesDecrypt(bytes, key), sandbox::decrypt(theirs, theirKey)),
        "cipher text is read alike");
    for (const qsizetype length : { 16, 24, 32 }) {
        const auto cipherText = Crypto::aesEncrypt(bytes, key.left(length));
        require(cipherText && Crypto::aesDecrypt(*cipherText, key.left(length)) == bytes,
            "what is encrypted is decrypted");
    }

    // As a body, and as the text of a body.
    const ApiResponseHelper helper;
    require(isUtf8(helper.getData(bytes).value_or(QByteArray())), "text or nothing");
    auto cipherText =
        Crypto::toBase64(QByteArray::fromStdString(sandbox::encrypt(theirs, theirKey)));
    const auto read = [&] { return helper.getData("{\"data\":\"" + cipherText + "\"}"); };
    const auto plain = read();
    require(plain ? *plain == bytes : !isUtf8(bytes), "every text comes through");
    cipherText[bytes.size() % cipherText.size()] ^= 1;
    const auto damaged = read();
    require(!damaged || (*damaged != bytes && isUtf8(*damaged)), "damage shows");
}
