#include "sandbox/service/Fault.h"

#include "sandbox/service/AnswerFaults.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>

namespace sandbox {
namespace {
using Effect = Fault::Effect;
using Moment = Fault::Moment;

constexpr long long mostFiller = 1LL << 28U; // of filler; all of it stands in memory

template <typename Value> struct Name {
    std::string_view name;
    Value value;
};

constexpr Name<Effect> effects[] = {
    { "close", Effect::close },
    { "reset", Effect::reset },
    { "half-close", Effect::halfClose },
    { "stall", Effect::stall },
    { "drip", Effect::drip },
    { "cut", Effect::cut },
    { "garbage", Effect::garbage },
    { "endless", Effect::endless },
};

constexpr Name<Moment> moments[] = {
    { "accept", Moment::accept },
    { "request", Moment::request },
    { "before", Moment::before },
    { "head", Moment::head },
    { "body", Moment::body },
    { "after", Moment::after },
};

/// Names that say in a word what developers ask for most.
constexpr std::pair<std::string_view, std::string_view> shortNames[] = {
    { "silence", "stall@before" },
    { "drip", "drip@body+0" },
    { "cut", "cut@body" },
    { "garbage", "garbage@body+0" },
};

std::optional<long long> numberIn(std::string_view text)
{
    long long number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    return number;
}

bool isNumber(std::string_view text, long long least, long long most)
{
    const auto number = numberIn(text);
    return number && *number >= least && *number <= most;
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), text) != words.end();
}

bool isRedirect(std::string_view text)
{
    const auto url = text.substr(std::min(text.size(), text.find(':')));
    return isNumber(text.substr(0, text.size() - url.size()), 301, 308) && url.size() > 1
        && std::all_of(url.begin(), url.end(), [](char c) { return c > ' ' && c < '\x7f'; });
}

bool isLength(std::string_view text)
{
    return isOneOf(text, { "none", "twice" })
        || ((text.starts_with('+') || text.starts_with('-'))
            && isNumber(text.substr(1), 1, mostFiller));
}

struct Kind {
    std::string_view name;
    bool ofFront;
    bool (*test)(std::string_view value);
    std::string_view expected;
};

const Kind kinds[] = {
    { "status", true, [](std::string_view text) { return isNumber(text, 100, 599); },
        "a number from 100 to 599" },
    { "redirect", true, isRedirect, "N:URL, N from 301 to 308" },
    { "length", true, isLength, "+N, -N, none or twice" },
    { "chunks", true,
        [](std::string_view text) {
            return isOneOf(text, { "broken", "endless" });
        },
        "broken or endless" },
    { "gzip", true, [](std::string_view text) { return isNumber(text, 1, mostFiller); },
        "a number of bytes up to 2^28" },
    { "cookie", true, [](std::string_view text) { return text.empty(); }, "nothing behind it" },
    { "body", true, [](std::string_view text) { return isNumber(text, 0, mostFiller); },
        "a number of bytes up to 2^28" },
    { "key", false, [](std::string_view text) { return text == "wrong"; }, "wrong" },
    { "blocks", false,
        [](std::string_view text) {
            return isOneOf(text, { "cut", "swapped" });
        },
        "cut or swapped" },
    { "padding", false, [](std::string_view text) { return text == "bad"; }, "bad" },
    { "flag", false,
        [](std::string_view text) {
            return isOneOf(text, { "off", "on" });
        },
        "off or on" },
    { "json", false, isJsonFault,
        "depth:N, duplicate, surrogate, nul, 2^53+1, 1e400, bom, or a path = a JSON value" },
    { "clock", false, [](std::string_view text) { return isNumber(text, -mostFiller, mostFiller); },
        "a whole number of seconds" },
};

template <typename Rows> std::string namesOf(const Rows &rows)
{
    std::string list;
    for (const auto &row : rows)
        list += (list.empty() ? "" : ", ") + std::string(row.name);
    return list;
}

template <typename Rows> const auto *find(const Rows &rows, std::string_view name)
{
    const auto found = std::find_if(
        std::begin(rows), std::end(rows), [name](const auto &row) { return row.name == name; });
    return found == std::end(rows) ? nullptr : &*found;
}

[[noreturn]] void fail(const std::string &text, const std::string &complaint)
{
    throw FaultError("\"" + text + "\": " + complaint);
}

void readWire(Fault &fault, std::string_view text)
{
    const auto at = text.find('@');
    const auto plus = text.find('+', at);
    const auto *effect = find(effects, text.substr(0, at));
    if (effect == nullptr)
        fail(fault.text, "no effect has this name; there are " + namesOf(effects));
    const auto name = text.substr(at + 1, plus == text.npos ? plus : plus - at - 1);
    const auto *moment = find(moments, name);
    if (moment == nullptr)
        fail(fault.text, "no moment has this name; there are " + namesOf(moments));
    if (effect->name == "drip" && !isOneOf(name, { "before", "head", "body" }))
        fail(fault.text, "nothing of an answer is left to drip; there are before, head, body");
    if (effect->name == "cut" && name != "body")
        fail(fault.text, "no length was promised yet, or all was sent; there is body");
    fault.effect = effect->value;
    fault.moment = moment->value;
    if (plus == text.npos)
        return;

    const auto hasBytes = isOneOf(moment->name, { "request", "head", "body" });
    if (!hasBytes && fault.effect != Effect::garbage)
        fail(fault.text, std::string(moment->name) + " has no bytes to count");
    if (!isNumber(text.substr(plus + 1), 0, mostFiller))
        fail(fault.text, "expected a number of bytes behind the plus");
    fault.bytes = static_cast<std::size_t>(*numberIn(text.substr(plus + 1)));
}
}

Fault Fault::parse(const std::string &text)
{
    Fault fault;
    fault.text = text;
    for (const auto &[name, meaning] : shortNames)
        if (text == name) {
            readWire(fault, meaning);
            return fault;
        }
    const auto colon = text.find(':');
    if (const auto *kind = find(kinds, std::string_view(text).substr(0, colon))) {
        fault.kind = kind->name;
        fault.value = colon == text.npos ? "" : text.substr(colon + 1);
        if (!kind->test(fault.value) || (fault.value.empty() && colon != text.npos))
            fail(text, "expected " + std::string(kind->expected));
        return fault;
    }
    if (text.find('@') == text.npos)
        fail(text, "no fault; there are EFFECT@MOMENT, " + namesOf(kinds));
    readWire(fault, text);
    return fault;
}

bool Fault::isOfFront() const
{
    const auto *row = find(kinds, kind);
    return effect != Effect::none || (row != nullptr && row->ofFront);
}

bool Fault::isOfCipher() const
{
    return is("key") || is("blocks") || is("padding") || text == "flag:off";
}

long long Fault::number() const { return numberIn(value).value_or(0); }

const std::vector<Fault> &commonWeather()
{
    static const std::vector<Fault> faults = [] {
        std::vector<Fault> list;
        for (const auto *text : {
                 "close@request",
                 "reset@request",
                 "close@before",
                 "reset@before",
                 "stall@before",
                 "half-close@before",
                 "garbage@before",
                 "reset@head",
                 "stall@head",
                 "garbage@head",
                 "endless@head",
                 "cut@body",
                 "reset@body",
                 "half-close@body",
                 "stall@body",
                 "garbage@body",
                 "endless@body",
                 "status:500",
                 "status:204",
                 "redirect:307:http://127.0.0.1:1/",
                 "length:+7",
                 "length:-7",
                 "length:twice",
                 "chunks:broken",
                 "gzip:67108864",
                 "key:wrong",
                 "blocks:cut",
                 "blocks:swapped",
                 "padding:bad",
                 "flag:off",
                 "flag:on",
                 "body:0",
                 "body:17",
                 "json:depth:1100",
                 "json:2^53+1",
                 "json:1e400",
                 "json:result=7",
                 "clock:7200",
             })
            list.push_back(Fault::parse(text));
        return list;
    }();
    return faults;
}

}
