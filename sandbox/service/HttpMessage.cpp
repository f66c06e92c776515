#include "sandbox/service/HttpMessage.h"

#include <strings.h>
#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace sandbox {
namespace {
constexpr std::string_view lineEnd = "\r\n";
constexpr auto lengthHeader = "Content-Length";

bool isHeader(const std::string &line, std::string_view name)
{
    return line.size() > name.size() && line[name.size()] == ':'
        && ::strncasecmp(line.data(), name.data(), name.size()) == 0;
}

std::string chunkOf(std::string_view bytes)
{
    char size[32] = {};
    std::snprintf(size, sizeof size, "%zx\r\n", bytes.size());
    return size + std::string(bytes) + "\r\n";
}

/// \p text and blanks behind it, \p size bytes in all, packed.
std::string packed(std::string_view text, std::size_t size)
{
    constexpr int gzipForm = 15 + 16;
    z_stream stream {};
    if (::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipForm, 8, Z_DEFAULT_STRATEGY)
        != Z_OK)
        throw std::runtime_error("nothing can be packed");
    std::string result;
    std::string block(text);
    auto left = size;
    int state = Z_OK;
    while (state != Z_STREAM_END) {
        block.resize(std::min<std::size_t>(left, block.empty() ? 65536 : block.size()), ' ');
        left -= block.size();
        stream.next_in = reinterpret_cast<unsigned char *>(block.data());
        stream.avail_in = static_cast<unsigned>(block.size());
        do {
            unsigned char buffer[65536];
            stream.next_out = buffer;
            stream.avail_out = sizeof buffer;
            state = ::deflate(&stream, left == 0 ? Z_FINISH : Z_NO_FLUSH);
            result.append(reinterpret_cast<char *>(buffer), sizeof buffer - stream.avail_out);
        } while (stream.avail_out == 0);
        block.clear();
    }
    ::deflateEnd(&stream);
    return result;
}
}

HttpMessage::HttpMessage(std::string bytes)
{
    const auto end = bytes.find("\r\n\r\n");
    if (end == bytes.npos)
        return;
    for (std::size_t at = 0; at < end;) {
        const auto stop = bytes.find(lineEnd, at);
        m_headers.push_back(bytes.substr(at, stop - at));
        at = stop + lineEnd.size();
    }
    m_start = m_headers.front();
    m_headers.erase(m_headers.begin());
    bytes.erase(0, end + 2 * lineEnd.size());
    m_body = std::move(bytes);
}

std::string HttpMessage::take(std::string_view name)
{
    std::string value;
    const auto isNamed = [name](const std::string &line) { return isHeader(line, name); };
    const auto found = std::find_if(m_headers.begin(), m_headers.end(), isNamed);
    if (found != m_headers.end())
        value = found->substr(std::min(found->size(), name.size() + 2));
    m_headers.erase(std::remove_if(m_headers.begin(), m_headers.end(), isNamed), m_headers.end());
    return value;
}

void HttpMessage::add(const std::string &name, const std::string &value)
{
    m_headers.push_back(name + ": " + value);
}

void HttpMessage::set(const std::string &name, const std::string &value)
{
    take(name);
    add(name, value);
}

void HttpMessage::setBody(std::string body)
{
    m_body = std::move(body);
    set(lengthHeader, std::to_string(m_body.size()));
}

void HttpMessage::setStatus(const std::string &number)
{
    m_start = "HTTP/1.1 " + number + " As set";
}

void HttpMessage::setLength(const std::string &change)
{
    const auto right = static_cast<long long>(m_body.size());
    if (change == "none")
        take(lengthHeader);
    else if (change == "twice")
        add(lengthHeader, std::to_string(right + 1));
    else
        set(lengthHeader, std::to_string(std::max(right + std::stoll(change), 0LL)));
}

void HttpMessage::chunk(bool endless)
{
    take(lengthHeader);
    add("Transfer-Encoding", "chunked");
    const auto half = m_body.size() / 2;
    m_endless = endless;
    if (endless) {
        m_body = chunkOf(m_body);
        m_filler = chunkOf(m_filler);
    } else {
        m_body = chunkOf(m_body.substr(0, half)) + "no size\r\n" + m_body.substr(half);
    }
}

void HttpMessage::apply(const Fault &fault)
{
    if (fault.is("status")) {
        setStatus(fault.value);
    } else if (fault.is("redirect")) {
        const auto colon = fault.value.find(':');
        setStatus(fault.value.substr(0, colon));
        add("Location", fault.value.substr(colon + 1));
    } else if (fault.is("length")) {
        setLength(fault.value);
    } else if (fault.is("chunks")) {
        chunk(fault.value == "endless");
    } else if (fault.is("gzip")) {
        setBody(packed(m_body, static_cast<std::size_t>(fault.number())));
        add("Content-Encoding", "gzip");
    } else if (fault.is("cookie")) {
        add("Set-Cookie", "sandbox=1; Path=/");
    } else if (fault.is("body")) {
        setBody(std::string(static_cast<std::size_t>(fault.number()), 'x'));
    } else if (fault.effect == Fault::Effect::endless && fault.moment == Fault::Moment::body) {
        take(lengthHeader); // a length would end it
    } else if (fault.effect != Fault::Effect::none && fault.moment == Fault::Moment::after) {
        // A client that means to use the connection again is the one to whom it matters.
        set("Connection", "keep-alive");
    }
}

std::string HttpMessage::head() const
{
    auto text = m_start + "\r\n";
    for (const auto &line : m_headers)
        text += line + "\r\n";
    return text + "\r\n";
}

}
