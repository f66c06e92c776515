#include "sandbox/service/AnswerFaults.h"

#include "sandbox/service/Cipher.h"

#include <algorithm>
#include <charconv>
#include <functional>

namespace sandbox {
namespace {
using nlohmann::json;

constexpr std::size_t aesBlock = 16; // bytes, of AES
constexpr std::size_t mostItems = 100000; // of all lists that a path may ask for
constexpr std::size_t mostDepth = 10000000;
constexpr std::string_view depthWord = "depth:";

// Stand for what the writer of JSON would not write, until it has written the rest.
constexpr auto mark = "\x01";
constexpr auto writtenMark = "\\u0001";

bool isCount(std::string_view text, std::size_t most, std::size_t &count)
{
    const auto *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, count);
    return result.ec == std::errc() && result.ptr == end && count <= most;
}

/// "result.list[0].app" as the library has it: "/result/list/0/app". Empty: not a path.
std::string pointerOf(std::string_view path)
{
    std::string pointer;
    std::size_t room = mostItems;
    while (!path.empty()) {
        std::string_view segment;
        if (path.front() == '[') {
            std::size_t index = 0;
            const auto close = path.find(']');
            segment = path.substr(1, close == path.npos ? close : close - 1);
            if (pointer.empty() || close == path.npos || !isCount(segment, room, index))
                return {};
            room -= index;
            path.remove_prefix(close + 1);
        } else {
            if (!pointer.empty() && path.front() == '.')
                path.remove_prefix(1);
            segment = path.substr(0, path.find_first_of(".["));
            // Of digits alone it would be an index, and no bound would hold.
            if (segment.find_first_not_of("0123456789") == segment.npos
                || segment.find_first_of("/~]") != segment.npos)
                return {};
            path.remove_prefix(segment.size());
        }
        pointer += "/" + std::string(segment);
    }
    return pointer;
}

void forEach(json &value, const std::function<void(json &)> &change)
{
    if (!value.is_structured())
        return change(value);
    for (auto &item : value)
        forEach(item, change);
}

void replaceAll(std::string &text, std::string_view from, std::string_view to)
{
    for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

/// Every text of the answer ends in \p escape.
std::string withEveryTextEndingIn(json envelope, std::string_view escape)
{
    forEach(envelope, [](json &value) {
        if (value.is_string())
            value = value.get<std::string>() + mark;
    });
    auto text = envelope.dump();
    replaceAll(text, writtenMark, escape);
    return text;
}

/// Every number of the answer is \p number.
std::string withEveryNumber(json envelope, std::string_view number)
{
    forEach(envelope, [](json &value) {
        if (value.is_number())
            value = mark;
    });
    auto text = envelope.dump();
    replaceAll(text, "\"" + std::string(writtenMark) + "\"", number);
    return text;
}

std::string withDepth(const json &envelope, std::size_t depth)
{
    auto text = envelope.dump();
    text.insert(text.size() - 1, ",\"deep\":" + std::string(depth, '[') + std::string(depth, ']'));
    return text;
}

/// Every key of the envelope stands twice, null first.
std::string withDuplicates(const json &envelope)
{
    std::string text;
    for (const auto &[key, value] : envelope.items()) {
        const auto name = json(key).dump();
        text += text.empty() ? '{' : ',';
        text.append(name).append(":null,").append(name).append(":").append(value.dump());
    }
    return text + "}";
}

std::string withValueAt(json envelope, const Fault &fault)
{
    const auto equals = fault.value.find('=');
    try {
        envelope[json::json_pointer(pointerOf(fault.value.substr(0, equals)))] =
            json::parse(fault.value.substr(equals + 1));
        return envelope.dump(); // which the bytes of a path may not allow
    } catch (const json::exception &) {
        throw FaultError("\"" + fault.text + "\": this answer has no such place");
    }
}
}

bool isJsonFault(std::string_view value)
{
    static constexpr std::string_view words[] = { "duplicate", "surrogate", "nul", "2^53+1",
        "1e400", "bom" };
    if (std::find(std::begin(words), std::end(words), value) != std::end(words))
        return true;
    std::size_t depth = 0;
    if (value.starts_with(depthWord))
        return isCount(value.substr(depthWord.size()), mostDepth, depth) && depth > 0;
    const auto equals = value.find('=');
    return equals != value.npos && !pointerOf(value.substr(0, equals)).empty()
        && !json::parse(value.substr(equals + 1), nullptr, false).is_discarded();
}

std::string textOf(json envelope, const Fault &fault)
{
    if (!fault.is("json"))
        return envelope.dump();
    const std::string_view value = fault.value;
    if (value == "duplicate")
        return withDuplicates(envelope);
    if (value == "surrogate")
        return withEveryTextEndingIn(std::move(envelope), "\\ud800");
    if (value == "nul")
        return withEveryTextEndingIn(std::move(envelope), "\\u0000");
    if (value == "2^53+1")
        return withEveryNumber(std::move(envelope), "9007199254740993");
    if (value == "1e400")
        return withEveryNumber(std::move(envelope), "1e400");
    if (value == "bom")
        return "\xef\xbb\xbf" + envelope.dump();
    std::size_t depth = 0;
    if (value.starts_with(depthWord) && isCount(value.substr(depthWord.size()), mostDepth, depth))
        return withDepth(envelope, depth);
    return withValueAt(std::move(envelope), fault);
}

std::string cipherTextOf(const std::string &text, const Fault &fault, const std::string &key)
{
    if (fault.is("key")) {
        auto other = key;
        std::transform(other.begin(), other.end(), other.begin(), [](char c) { return ~c; });
        return encrypt(text, other);
    }
    if (fault.is("padding")) {
        // Filled up by zeros, which no padding has; the block of right padding behind is dropped.
        const auto missing = aesBlock - text.size() % aesBlock;
        auto bytes = encrypt(text + std::string(missing, '\0'), key);
        bytes.resize(bytes.size() - aesBlock);
        return bytes;
    }
    auto bytes = encrypt(text, key);
    if (fault.text == "blocks:cut")
        bytes.resize(bytes.size() - aesBlock / 2);
    if (fault.text == "blocks:swapped")
        std::swap_ranges(bytes.begin(), bytes.begin() + aesBlock, bytes.begin() + aesBlock);
    return bytes;
}

}
