#include "Client.h"

#include <gcrypt.h>
#include <gtest/gtest.h>

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

// Once and before all else: tests call from several threads, and the first use of the library is
// not meant for that.
void initialiseCipherLibrary()
{
    static const bool once = [] {
        gcry_check_version(nullptr);
        gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
    static_cast<void>(once);
}

std::string aes(std::string bytes, const std::string &key, bool forward)
{
    initialiseCipherLibrary();
    gcry_cipher_hd_t handle = nullptr;
    gcry_cipher_open(&handle, GCRY_CIPHER_AES256, GCRY_CIPHER_MODE_ECB, 0);
    gcry_cipher_setkey(handle, key.data(), key.size());
    (forward ? gcry_cipher_encrypt : gcry_cipher_decrypt)(
        handle, bytes.data(), bytes.size(), nullptr, 0);
    gcry_cipher_close(handle);
    return bytes;
}

constexpr auto *letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string toBase64(const std::string &bytes)
{
    std::string text;
    unsigned group = 0;
    unsigned bits = 0;
    for (const auto c : bytes) {
        group = group << 8U | static_cast<unsigned char>(c);
        for (bits += 8; bits >= 6; bits -= 6)
            text += letters[group >> (bits - 6) & 63U];
    }
    if (bits > 0)
        text += letters[group << (6 - bits) & 63U];
    return text.append((4 - text.size() % 4) % 4, '=');
}

std::string fromBase64(const std::string &text)
{
    std::string bytes;
    unsigned group = 0;
    unsigned bits = 0;
    for (const auto c : text.substr(0, text.find('='))) {
        group = group << 6U | static_cast<unsigned>(std::strchr(letters, c) - letters);
        bits += 6;
        if (bits >= 8)
            bytes += static_cast<char>(group >> (bits -= 8));
    }
    return bytes;
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
    initialiseCipherLibrary();
    gcry_md_hd_t handle = nullptr;
    gcry_md_open(&handle, GCRY_MD_SHA256, GCRY_MD_FLAG_HMAC);
    gcry_md_setkey(handle, signingKey, std::strlen(signingKey));
    gcry_md_write(handle, text.data(), text.size());
    const std::string mac(reinterpret_cast<const char *>(gcry_md_read(handle, GCRY_MD_SHA256)), 32);
    gcry_md_close(handle);
    return toBase64(mac);
}

// What these tests send was checked against another library's command line.
TEST(SandboxClient, SignsAndEncryptsAsOthersDo)
{
    EXPECT_EQ(signature("1700000000000", R"({"timezone":"Europe\/Istanbul"})"),
        "wlBqUYLigytUS+ktZTOfCh+taetRJ3NPYk6Or8bRxeg=");
    EXPECT_EQ(encrypted(R"({"timezone":"Europe\/Istanbul"})", secret),
        "j/XWWJ8s99tACq82PUOjmHmABOh38VTR0vaKTvc/l8M=");
}

void Request::set(const std::string &header, const std::string &value)
{
    headers.erase(header);
    headers.emplace(header, value);
}

int Reply::metaStatus() const { return envelope.at("meta").at("httpStatusCode").get<int>(); }
std::string Reply::errorCode() const { return envelope.at("meta").value("errorCode", ""); }
std::string Reply::errorMessage() const { return envelope.at("meta").value("errorMessage", ""); }

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

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
        const auto health = client().Get("/sandbox/health");
        if (health && json::parse(health->body) == json { { "status", "running" } })
            return;
    }
    throw std::runtime_error("the service is not healthy");
}

httplib::Client Sandbox::client() const
{
    httplib::Client client("127.0.0.1", m_port);
    client.set_read_timeout(20);
    return client;
}

json Sandbox::get(const std::string &path) const
{
    const auto answer = httplib::Client("127.0.0.1", m_pagePort).Get(path);
    auto result = json::parse(answer ? answer->body : "{}");
    result["status"] = answer ? answer->status : 0;
    return result;
}

json Sandbox::post(const std::string &path, const json &body) const
{
    const auto answer =
        httplib::Client("127.0.0.1", m_pagePort).Post(path, body.dump(), "application/json");
    auto result = json::parse(answer ? answer->body : "{}");
    result["status"] = answer ? answer->status : 0;
    return result;
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
