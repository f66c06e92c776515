#include "Client.h"

#include "sandbox/service/Cipher.h"

#include <algorithm>
#include <ctime>

namespace {
constexpr auto hexadecimalSecret =
    "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e";
constexpr auto signingKey = "GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/";

json withStatus(const httplib::Result &answer)
{
    auto result = json::parse(answer ? answer->body : "{}");
    result["status"] = answer ? answer->status : 0;
    return result;
}
}

const std::string secret = *sandbox::fromHex(hexadecimalSecret);

std::string encrypted(const std::string &plain, const std::string &key)
{
    return sandbox::toBase64(sandbox::encrypt(plain, key));
}

std::string decrypted(const std::string &base64, const std::string &key)
{
    // Before a block of padding that is right all is text: a fault may have spoilt the other.
    const auto bytes = sandbox::fromBase64(base64).value_or("") + sandbox::encrypt("", key);
    const auto plain = sandbox::decrypt(bytes, key).value_or(" ");
    const auto padding = plain.empty() ? '\0' : plain.back();
    return padding > 0 && padding <= 16 && plain.ends_with(std::string(padding, padding))
        ? plain.substr(0, plain.size() - padding)
        : plain + "(not padded)";
}

std::string signature(const std::string &timeStamp, const std::string &signedJson)
{
    return signatureOf(timeStamp + "-" + std::regex_replace(signedJson, std::regex(R"(\\/)"), "/"));
}

std::string signatureOf(const std::string &text, const std::string &key)
{
    return sandbox::toBase64(sandbox::hmacSha256(text, key.empty() ? signingKey : key));
}

std::string canonical(const json &value)
{
    return std::regex_replace(value.dump(), std::regex("/"), R"(\/)");
}

std::string timeStampOf(long offset) { return std::to_string(std::time(nullptr) + offset) + "000"; }

Sandbox::Sandbox(const json &scenario, const std::vector<std::string> &options)
{
    json whole { { "keys", { { "client", "parloquin-demo" }, { "secret", hexadecimalSecret } } } };
    whole.update(scenario);
    m_scenario = std::make_unique<TemporaryFile>(whole.dump());
    std::vector<std::string> words { SANDBOX_PROGRAM, "--port", "0", "--page", "0", "--scenario",
        m_scenario->path() };
    words.insert(words.end(), options.begin(), options.end());
    m_process = std::make_unique<Process>(words);
    const auto output = m_process->waitForOutput("/\n");
    std::smatch ports;
    if (!std::regex_search(output, ports,
            std::regex("^parloquin-sandbox listens at 127.0.0.1:([0-9]+)\n"
                       "its page is at http://127.0.0.1:([0-9]+)/\n")))
        throw std::runtime_error("the service did not start: " + output);
    m_port = std::stoi(ports[1]);
    m_pagePort = std::stoi(ports[2]);
}

httplib::Client Sandbox::client() const
{
    httplib::Client client("127.0.0.1", m_port);
    client.set_read_timeout(20);
    return client;
}

json Sandbox::get(const std::string &path) const
{
    return withStatus(httplib::Client("127.0.0.1", m_pagePort).Get(path));
}

json Sandbox::post(const std::string &path, const json &body) const
{
    return withStatus(
        httplib::Client("127.0.0.1", m_pagePort).Post(path, body.dump(), "application/json"));
}

Request Sandbox::request(const std::string &call, const std::string &text) const
{
    const auto timeStamp = timeStampOf();
    Request request;
    request.path = "/v1.0/" + call;
    request.headers = {
        { "User-Agent", "iOS" },
        { "X-TRZ-Os", "ios 12" },
        { "X-TRZ-Sdk-Version", "1.0" },
        { "X-TRZ-Client-Device-Id", "6F9619FF-8B86-D011-B42D-00C04FC964FF" },
        { "X-TRZ-Lang", "en" },
        { "X-TRZ-Req-Timestamp", timeStamp },
        { "X-TRZ-Req-Signature", signature(timeStamp, text) },
        { "X-TRZ-Encrypted", "1" },
        { "X-TRZ-Client-Key", "parloquin-demo" },
        { "Content-Type", "application/json; charset=utf-8" },
    };
    request.body = json { { "data", encrypted(text, secret) } }.dump();
    return request;
}

Reply Sandbox::send(const Request &request) const
{
    httplib::Request raw;
    raw.method = request.method;
    raw.path = request.path;
    raw.headers = request.headers;
    raw.body = request.body;
    auto connection = client();
    const auto answer = connection.send(raw);
    Reply reply;
    if (!answer)
        return reply;
    reply.status = answer->status;
    reply.body = answer->body;
    const auto outer = json::parse(reply.body, nullptr, false);
    if (outer.is_object() && outer.contains("data"))
        reply.body = decrypted(outer.at("data").get<std::string>(), secret);
    reply.envelope = json::parse(reply.body, nullptr, false);
    return reply;
}

Reply Sandbox::call(
    const std::string &name, const json &parameters, const std::string &language) const
{
    auto right = request(name, canonical(parameters));
    right.set("X-TRZ-Lang", language);
    return send(right);
}
