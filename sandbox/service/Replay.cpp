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
    if (keys != nullptr && !exchange.parameters.empty()) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(
            std::chrono::system_clock::now().time_since_epoch());
        const auto stamp = std::to_string(seconds.count()) + "000";
        set(request.headers, "X-TRZ-Req-Timestamp", stamp);
        set(request.headers, "X-TRZ-Req-Signature",
            signatureOf(signedTextOf(stamp, exchange.parameters)));
        request.body = nlohmann::json {
            { "data", toBase64(encrypt(exchange.parameters, keys->secret)) }
        }.dump();
    }
    httplib::Client client("127.0.0.1", port);
    client.set_url_encode(false);
    client.set_read_timeout(10);
    const auto result = client.send(request);
    return result ? result->status : 0;
}

}
