#include "ByHand.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>

#include <nettle/aes.h>
#include <nettle/base64.h>
#include <nettle/hmac.h>
#include <plist/plist.h>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr char before[] = "{\"data\":\"";
constexpr char after[] = "\"}";
constexpr qsizetype frame = sizeof before + sizeof after - 2; // bytes around the cipher text

std::uint8_t *bytes(QByteArray &text) { return reinterpret_cast<std::uint8_t *>(text.data()); }

const std::uint8_t *bytes(const QByteArray &text)
{
    return reinterpret_cast<const std::uint8_t *>(text.constData());
}

std::size_t sizeOf(const QByteArray &text) { return static_cast<std::size_t>(text.size()); }

void appendText(QByteArray &json, const QString &text)
{
    const QByteArray plain = text.toUtf8();
    const qsizetype start = json.size();
    json.resize(start + 2 * plain.size() + 2); // room for escaping every character
    char *to = json.data() + start;
    *to++ = '"';
    for (const char c : plain) {
        if (c == '"' || c == '\\' || c == '/')
            *to++ = '\\';
        *to++ = c;
    }
    *to++ = '"';
    json.resize(to - json.constData());
}

void appendBase64(QByteArray &to, const QByteArray &from)
{
    const qsizetype start = to.size();
    to.resize(start + static_cast<qsizetype>(BASE64_ENCODE_RAW_LENGTH(sizeOf(from))));
    base64_encode_raw(to.data() + start, sizeOf(from), bytes(from));
}

QByteArray textOf(plist_t list, const char *key)
{
    std::uint64_t length = 0;
    const char *const text = plist_get_string_ptr(plist_dict_get_item(list, key), &length);
    return { text, static_cast<qsizetype>(length) };
}

} // namespace

ByHand::Keys ByHand::keys()
{
    QFile file(QStringLiteral(":/Info.plist"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no keys");
    const QByteArray text = file.readAll();
    plist_t list = nullptr;
    plist_from_xml(text.constData(), static_cast<std::uint32_t>(text.size()), &list);
    const Keys keys { textOf(list, "ParloquinKey"),
        QByteArray::fromHex(textOf(list, "ParloquinSecret")) };
    plist_free(list);
    return keys;
}

ByHand::Request ByHand::request(const parloquin::StartRequestModel &model, const Keys &keys)
{
    QByteArray json = "{\"app\":";
    appendText(json, *model.app);
    json += ",\"countryCode\":";
    appendText(json, model.countryCode);
    json += ",\"installedApps\":";
    appendText(json, *model.installedApps);
    json += '}';

    Request request;
    request.time = QByteArray::number(QDateTime::currentSecsSinceEpoch() * 1000);
    request.signedText = request.time + '-' + json;
    request.signedText.replace("\\/", "/");
    static const QByteArray signingKey =
        "0123456789012345678901234567890123456789012345678901234567890123";
    hmac_sha256_ctx hmac;
    hmac_sha256_set_key(&hmac, sizeOf(signingKey), bytes(signingKey));
    hmac_sha256_update(&hmac, sizeOf(request.signedText), bytes(std::as_const(request.signedText)));
    QByteArray mac(SHA256_DIGEST_SIZE, Qt::Uninitialized);
    hmac_sha256_digest(&hmac, SHA256_DIGEST_SIZE, bytes(mac));
    appendBase64(request.signature, mac);

    const qsizetype padding = AES_BLOCK_SIZE - json.size() % AES_BLOCK_SIZE;
    json.append(padding, static_cast<char>(padding));
    aes256_ctx aes;
    aes256_set_encrypt_key(&aes, bytes(keys.secret));
    aes256_encrypt(&aes, sizeOf(json), bytes(json), bytes(std::as_const(json)));
    request.body.reserve(frame + json.size() * 4 / 3 + 4);
    request.body += before;
    appendBase64(request.body, json);
    request.body += after;
    return request;
}

void ByHand::print(const Request &request)
{
    static const QByteArray cyclones = QStringLiteral("\U0001F300").repeated(5).toUtf8();
    for (const QByteArray &line :
        { "\n\n\n" + cyclones, QByteArray("[HMAC/SIGNATURE Start]"), "HMAC: " + request.signedText,
            "HMAC with SHA: Optional(\"" + request.signature + "\")",
            QByteArray("[HMAC/SIGNATURE End]"), cyclones + "\n\n\n" }) {
        std::puts(line.constData());
        std::fflush(stdout); // a line stands there at once, whatever follows
    }
}

QByteArray ByHand::plainText(const QByteArray &body, const Keys &keys)
{
    const auto size = sizeOf(body) - static_cast<std::size_t>(frame);
    QByteArray text(static_cast<qsizetype>(BASE64_DECODE_LENGTH(size)), Qt::Uninitialized);
    base64_decode_ctx base64;
    base64_decode_init(&base64);
    std::size_t length = sizeOf(text);
    if (body.size() < frame || !body.startsWith(before)
        || base64_decode_update(
               &base64, &length, bytes(text), size, body.constData() + sizeof before - 1)
            == 0
        || length == 0 || length % AES_BLOCK_SIZE != 0)
        qFatal("no encrypted body");
    aes256_ctx aes;
    aes256_set_decrypt_key(&aes, bytes(keys.secret));
    aes256_decrypt(&aes, length, bytes(text), bytes(std::as_const(text)));
    text.truncate(static_cast<qsizetype>(length));
    text.chop(text.back());
    return text;
}
