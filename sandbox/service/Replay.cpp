#include "sandbox/service/Replay.h"

#include "sandbox/service/Cipher.h"
#include "sandbox/service/SignatureHint.h"

#include <httplib.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace sandbox {
namespace {
void set(httplib::Headers &headers, const char *name, const std::string &value)
{
    headers.erase(name);
    headers.emplace(name, value);
}

/// The parameters; those too of a request that was refused before anybody read them.
std::string plainOf(const Exchange &exchange, const Keys &keys)
{
    if (!exchange.parameters.empty())
        return exchange.parameters;
    const auto body = nlohmann::json::parse(exchange.body, nullptr, false);
    if (!body.is_object() || !body.contains("data") || !body["data"].is_string())
        return {};
    const auto cipherText = fromBase64(body["data"].get<std::string>());
    return cipherText ? decrypt(*cipherText, keys.secret).value_or("") : std::string();
}
}

int replay(const Exchange &exchange, int port, const Keys *keys)
{
    httplib::Request request;
    request.method = exchange.method;
    request.path = exchange.target;
    request.body = exchange.body;
    for (const auto &[name, value] : exchange.headers)
        // These belong to the connection, which is another.
        if (name != "Host" && name != "Content-Length" && name != "Connection")
            request.headers.emplace(name, value);
    if (const auto plain = keys == nullptr ? std::string() : plainOf(exchange, *keys);
        !plain.empty()) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(
            std::chrono::system_clock::now().time_since_epoch());
        const auto stamp = std::to_string(seconds.count()) + "000";
        set(request.headers, "X-TRZ-Req-Timestamp", stamp);
        set(request.headers, "X-TRZ-Req-Signature", signatureOf(signedTextOf(stamp, plain)));
        request.body = nlohmann::json { { "data", toBase64(encrypt(plain, keys->secret)) } }.dump();
    }
    httplib::Client client("127.0.0.1", port);
    client.set_url_encode(false);
    client.set_read_timeout(10);
    const auto result = client.send(request);
    return result ? result->status : 0;
}

}
