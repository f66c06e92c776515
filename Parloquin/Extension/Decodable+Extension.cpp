#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/ParseJson.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace parloquin {

namespace {

namespace dom = simdjson::dom;

/// Filled only on the way out of a failed read, innermost name first.
struct DecodingFault {
    QString path;
    QString what;
};

QString toText(std::string_view text)
{
    // Most are ASCII, which costs half of a conversion that looks for more.
    uchar bits = 0;
    for (const uchar c : text)
        bits |= c;
    if (bits < 0x80)
        return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));

    // The conversion takes a leading mark for one of the encoding; here it is a text's own.
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark))
        return QChar(0xFEFF) + toText(text.substr(mark.size()));
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

bool expected(const char *what, DecodingFault &fault)
{
    fault.what = QStringLiteral("expected ") + QLatin1String(what);
    return false;
}

bool unknown(const QString &value, DecodingFault &fault)
{
    fault.what = QStringLiteral("unknown value ") + value;
    return false;
}

bool read(const dom::element &json, const JsonType &type, void *into, DecodingFault &fault);

bool readIntegerEnum(
    const dom::element &json, const JsonType &type, void *into, DecodingFault &fault)
{
    if (json.is_uint64() && !json.is_int64()) // too large for any case
        return unknown(QString::number(json.get_uint64().value_unsafe()), fault);
    std::int64_t value = 0;
    if (json.get_int64().get(value) != simdjson::SUCCESS)
        return expected("integer", fault);
    for (std::size_t row = 0; row < type.rows.count; ++row) {
        if (type.rows.integer(row) == value) {
            type.rows.assign(into, row);
            return true;
        }
    }
    return unknown(QString::number(value), fault);
}

bool readTextEnum(const dom::element &json, const JsonType &type, void *into, DecodingFault &fault)
{
    std::string_view value;
    if (json.get_string().get(value) != simdjson::SUCCESS)
        return expected("string", fault);
    for (std::size_t row = 0; row < type.rows.count; ++row) {
        if (type.rows.text(row) == value) {
            type.rows.assign(into, row);
            return true;
        }
    }
    constexpr qsizetype legible = 64;
    return unknown(u'"' + toText(value).left(legible) + u'"', fault);
}

bool readList(const dom::element &json, const JsonType &type, void *into, DecodingFault &fault)
{
    dom::array array;
    if (json.get_array().get(array) != simdjson::SUCCESS)
        return expected("array", fault);
    const auto size = static_cast<qsizetype>(array.size()); // or less, of some millions
    type.list.reserve(into, size);
    // Several at a time, as growing has its price; never many more than turn out to be good.
    qsizetype made = 0;
    qsizetype index = 0;
    std::byte *place = nullptr;
    for (const dom::element item : array) {
        if (index == made) {
            made = std::max(index + 1, std::min(2 * index + 1, size));
            place = static_cast<std::byte *>(type.list.resize(into, made))
                + static_cast<std::size_t>(index) * type.list.itemSize;
        }
        if (!read(item, *type.list.item, place, fault)) {
            fault.path.prepend(u'[' + QString::number(index) + u']');
            return false;
        }
        ++index;
        place += type.list.itemSize;
    }
    return true;
}

/// Members mostly come in the order of the list, so the search starts behind the last one found.
std::size_t memberOf(std::span<const JsonMember> members, std::string_view key, std::size_t start)
{
    for (std::size_t i = start; i < members.size(); ++i) {
        if (members[i].key == key)
            return i;
    }
    for (std::size_t i = 0; i < start; ++i) {
        if (members[i].key == key)
            return i;
    }
    return members.size();
}

bool readModel(const dom::element &json, const JsonType &type, void *into, DecodingFault &fault)
{
    dom::object object;
    if (json.get_object().get(object) != simdjson::SUCCESS)
        return expected("object", fault);

    // Gathered first, read after: of a key given twice only the last value may count, or fail.
    std::array<dom::element, JsonType::maxMembers> values;
    std::array<bool, JsonType::maxMembers> isGiven {};
    std::size_t next = 0;
    for (const dom::key_value_pair pair : object) {
        const std::size_t i = memberOf(type.members, pair.key, next);
        if (i == type.members.size())
            continue;
        values[i] = pair.value;
        isGiven[i] = true;
        next = i + 1;
    }

    for (std::size_t i = 0; i < type.members.size(); ++i) {
        const JsonMember &member = type.members[i];
        if (member.isOptional && (!isGiven[i] || values[i].is_null()))
            continue; // a new model's optionals are empty
        if (!isGiven[i])
            fault.what = QStringLiteral("missing");
        else if (read(values[i], *member.type, member.make(into), fault))
            continue;
        fault.path.prepend(u'.' + toText(member.key));
        return false;
    }
    return true;
}

bool read(const dom::element &json, const JsonType &type, void *into, DecodingFault &fault)
{
    switch (type.kind) {
    case JsonType::Kind::text: {
        std::string_view text;
        if (json.get_string().get(text) != simdjson::SUCCESS)
            return expected("string", fault);
        *static_cast<QString *>(into) = toText(text);
        return true;
    }
    case JsonType::Kind::boolean:
        if (json.get_bool().get(*static_cast<bool *>(into)) != simdjson::SUCCESS)
            return expected("boolean", fault);
        return true;
    case JsonType::Kind::integerEnum:
        return readIntegerEnum(json, type, into, fault);
    case JsonType::Kind::textEnum:
        return readTextEnum(json, type, into, fault);
    case JsonType::Kind::list:
        return readList(json, type, into, fault);
    case JsonType::Kind::model:
        return readModel(json, type, into, fault);
    }
    return false;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Goes on to the end of what could be a number. \return whether it is one
bool skipNumber(const QByteArray &json, qsizetype &at)
{
    const auto skip = [&](std::string_view any) {
        const bool is = at < json.size() && any.find(json.at(at)) != std::string_view::npos;
        at += is ? 1 : 0;
        return is;
    };
    const auto skipDigits = [&] {
        const qsizetype start = at;
        while (at < json.size() && isDigit(json.at(at)))
            ++at;
        return at > start;
    };
    skip("-");
    return (skip("0") || skipDigits()) && (!skip(".") || skipDigits())
        && (!skip("eE") || (skip("+-"), skipDigits()));
}

/// The same document with another number for each long one: no field takes one, and where nobody
/// reads it a number of any size is as good as any.
QByteArray withoutLongNumbers(QByteArray json)
{
    constexpr std::string_view substitute = "0.5"; // no integer: a field that is one has its fault
    constexpr qsizetype shortest = 5; // of those that the parser cannot hold: 1e309
    for (qsizetype at = 0; at < json.size();) {
        const char c = json.at(at);
        if (c == '"') {
            for (++at; at < json.size() && json.at(at) != '"'; ++at)
                at += json.at(at) == '\\' ? 1 : 0;
            ++at;
        } else if (c == '-' || isDigit(c)) {
            const qsizetype start = at;
            const bool isNumber = skipNumber(json, at);
            const qsizetype end = at;
            while (at < json.size() && (isDigit(json.at(at)) || json.at(at) == '-'))
                ++at; // 3-26 is none, and stays none
            if (isNumber && at == end && end - start >= shortest) {
                const auto place = json.begin() + start;
                std::fill(place, json.begin() + at, ' ');
                std::copy(substitute.begin(), substitute.end(), place);
            }
        } else {
            ++at;
        }
    }
    return json;
}

} // namespace

bool decodeModel(const QByteArray &body, void *model, const JsonType &type, QString *fault)
{
    dom::document document;
    dom::element root;
    DecodingFault found;
    auto error = parseJson(document, body).get(root);
    // Perhaps a number beyond 64 bits, in a key that nobody reads: versions call that differently.
    if (error != simdjson::SUCCESS)
        error = parseJson(document, withoutLongNumbers(body)).get(root);
    if (error != simdjson::SUCCESS)
        found.what = QStringLiteral("no JSON: ") + QLatin1String(simdjson::error_message(error));
    else if (readModel(root, type, model, found))
        return true;

    if (fault) {
        // Every path starts with a dot or is that of the body itself.
        const QString place = found.path.isEmpty() ? QStringLiteral("body") : found.path.mid(1);
        *fault = place + QStringLiteral(": ") + found.what;
    }
    return false;
}

} // namespace parloquin
