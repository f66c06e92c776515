#include "Client.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <regex>

using nlohmann::json;

const std::string secret = "\x8f\x2d\x6b\x7a\x41\xc0\x5e\x93\xd7\xa8\x61\x4f\x0b\xe2\x39\x5c"
                           "\xc6\x71\x0f\x4d\x92\xab\x38\xe5\x57\x0d\x1c\x64\xfa\x83\xb9\x2e";

namespace {
constexpr auto keys = R"({"keys":{"client":"parloquin-demo","secret":
    "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"}})";
constexpr auto signingKey = "GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/";

const unsigned char *raw(const std::string &text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

unsigned char *raw(std::string &text) { return reinterpret_cast<unsigned char *>(text.data()); }

/// Whole blocks; padding stands as it is, a test may have spoilt it.
std::string aes(const std::string &bytes, const std::string &key, bool forward)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
        EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    std::string result(bytes.size() + 16, '\0');
    int size = 0;
    EVP_CipherInit_ex(
        context.get(), EVP_aes_256_ecb(), nullptr, raw(key), nullptr, forward ? 1 : 0);
    EVP_CIPHER_CTX_set_padding(context.get(), 0);
    EVP_CipherUpdate(context.get(), raw(result), &size, raw(bytes), static_cast<int>(bytes.size()));
    result.resize(bytes.size());
    return result;
}

std::string toBase64(const std::string &bytes)
{
    std::string text((bytes.size() + 2) / 3 * 4, '\0');
    EVP_EncodeBlock(raw(text), raw(bytes), static_cast<int>(bytes.size()));
    return text;
}

std::string fromBase64(const std::string &text)
{
    std::string bytes(text.size(), '\0');
    const auto size = EVP_DecodeBlock(raw(bytes), raw(text), static_cast<int>(text.size()));
    bytes.resize(std::max(0L, size - std::count(text.begin(), text.end(), '=')));
    return bytes;
}

json withStatus(const httplib::Result &answer)
{
    auto result = json::parse(answer ? answer->body : "{}");
    result["status"] = answer ? answer->status : 0;
    return result;
}
}

std::string encrypted(const std::string &plain, const std::string &key)
{
    const auto padding = 16 - plain.size() % 16;
    return toBase64(aes(plain + std::string(padding, static_cast<char>(padding)), key, true));
}

std::string decrypted(const std::string &base64, const std::string &key)
{
    auto plain = aes(fromBase64(base64), key, false);
    plain.resize(plain.size() - static_cast<unsigned char>(plain.back()));
    return plain;
}

std::string signature(const std::string &timeStamp, const std::string &signedJson)
{
    const auto text = timeStamp + "-" + std::regex_replace(signedJson, std::regex(R"(\\/)"), "/");
    std::string mac(32, '\0');
    HMAC(EVP_sha256(), signingKey, static_cast<int>(std::strlen(signingKey)), raw(text),
        text.size(), raw(mac), nullptr);
    return toBase64(mac);
}

std::string canonical(const json &value)
{
    return std::regex_replace(value.dump(), std::regex("/"), R"(\/)");
}

std::string timeStampOf(long offset) { return std::to_string(std::time(nullptr) + offset) + "000"; }

Sandbox::Sandbox(const json &scenario, const std::vector<std::string> &options)
{
    auto whole = json::parse(keys);
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
    reply.wasEncrypted = answer->get_header_value("X-TRZ-Encrypted") == "1" && outer.is_object()
        && outer.size() == 1 && outer.contains("data");
    if (reply.wasEncrypted)
        reply.body = decrypted(outer.at("data").get<std::string>(), secret);
    reply.envelope = json::parse(reply.body, nullptr, false);
    return reply;
}

Reply Sandbox::call(const std::string &name, const json &parameters) const
{
    return send(request(name, canonical(parameters)));
}
