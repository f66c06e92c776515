// Random messages, encrypted and signed by the kit as by a second library, and read back by both.
// answers_messages [COUNT [SEED]]; ends with 1 at the first message on which the two disagree.
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Manager/EncryptManager.h"
#include "Parloquin/Platform/Crypto.h"
#include "sandbox/service/Cipher.h"

#include <cstdio>
#include <random>

using namespace parloquin;

namespace {

const std::string hostSecret =
    *sandbox::fromHex("8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e");
std::mt19937_64 generator;

QByteArray randomBytes(size_t size)
{
    QByteArray bytes(static_cast<qsizetype>(size), Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(generator());
    return bytes;
}

/// \return what the two disagree on; null where they agree
const char *disagreement(size_t size)
{
    const QByteArray message = randomBytes(size);
    const QByteArray key = randomBytes(32);
    const QByteArray macKey = randomBytes(generator() % 200);
    const QByteArray ours = Crypto::aesEncrypt(message, key).value_or(QByteArray());
    const QByteArray mac = Crypto::hmacSha256(message, macKey);
    const std::string plain = message.toStdString();
    const std::string theirKey = key.toStdString();
    const std::string theirs = sandbox::encrypt(plain, theirKey);

    // A body's data, of a text with every control character, quote and slash there is.
    const QJsonObject body { { QStringLiteral("t"),
        QString::fromLatin1(message.first(message.size() / 2)) } };
    const std::string json = jsonText(body).toStdString();
    const std::string data = sandbox::toBase64(sandbox::encrypt(json, hostSecret));
    const EncryptManager &manager = EncryptManager::shared();

    const std::pair<const char *, bool> agreements[] = {
        { "the cipher text", ours.toStdString() == theirs },
        { "the second library's reading", sandbox::decrypt(ours.toStdString(), theirKey) == plain },
        { "the kit's reading",
            Crypto::aesDecrypt(QByteArray::fromStdString(theirs), key) == message },
        { "the code", mac.toStdString() == sandbox::hmacSha256(plain, macKey.toStdString()) },
        { "Base64", Crypto::toBase64(ours).toStdString() == sandbox::toBase64(theirs) },
        { "the bytes of Base64", Crypto::fromBase64(sandbox::toBase64(theirs)) == ours },
        { "a body's data", manager.encrypt(body) == QString::fromStdString(data) },
        { "a body's text", manager.decrypt(QByteArrayView(data)) == QByteArrayView(json) },
    };
    for (const auto &[what, agreed] : agreements) {
        if (!agreed)
            return what;
    }
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    const size_t count = argc > 1 ? std::stoull(argv[1]) : 1'000'000;
    const size_t seed = argc > 2 ? std::stoull(argv[2]) : std::random_device()();
    std::printf("%zu messages from seed %zu\n", count, seed);
    generator.seed(seed);
    for (size_t number = 0; number < count; ++number) {
        // The first hundred have every length around a block's; then small ones and some KiB.
        const size_t size = number < 100 ? number : generator() % (number % 4 == 0 ? 6000 : 300);
        if (const char *what = disagreement(size)) {
            std::printf("number %zu, of %zu bytes: they disagree on %s\n", number, size, what);
            return 1;
        }
    }
    std::puts("all agreed");
    return 0;
}
