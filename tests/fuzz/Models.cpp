// The envelope of each call, against a second reader: read whole and as written, or not at all.
#include "Parloquin/Extension/Decodable+Extension.h"
#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Model/Base/BaseResponseModel.h"
#include "Parloquin/Networking/Router/ApiCalls.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "fuzz/Fuzz.h"

#include <QtCore/QJsonArray>

#include <nlohmann/json.hpp>

using namespace parloquin;
using nlohmann::json;

namespace {

bool isAsWritten(const QJsonValue &read, const json &written, const JsonType &type)
{
    switch (type.kind) {
    case JsonType::Kind::text:
    case JsonType::Kind::textEnum:
        return written.is_string() && read.toString().toStdString() == written.get<std::string>();
    case JsonType::Kind::boolean:
        return written.is_boolean() && read.toBool() == written.get<bool>();
    case JsonType::Kind::integerEnum:
        return written.is_number_integer() && read.toInteger() == written.get<qint64>();
    case JsonType::Kind::list:
        for (std::size_t i = 0; i < written.size(); ++i) {
            if (!isAsWritten(read[static_cast<qsizetype>(i)], written[i], *type.list.item))
                return false;
        }
        return written.is_array()
            && read.toArray().size() == static_cast<qsizetype>(written.size());
    case JsonType::Kind::model:
        for (const JsonMember &member : type.members) {
            const auto found = written.find(member.key);
            const QJsonValue value = read[QLatin1String(member.key)];
            if (found == written.end() || found->is_null()
                    ? !value.isUndefined()
                    : !isAsWritten(value, *found, *member.type))
                return false;
        }
        return written.is_object();
    }
    return false;
}

template <class T> void check(const QByteArray &bytes)
{
    using Envelope = BaseResponseModel<T>;
    QString fault;
    const auto model = decode<Envelope>(bytes, &fault);
    const json written = json::parse(bytes.begin(), bytes.end(), nullptr, false);
    require(model.has_value() == fault.isEmpty(), "a failure has its fault");
    // The other passes over a mark of the encoding, and ends at a NUL.
    const bool isJson =
        !written.is_discarded() && !bytes.startsWith("\xEF\xBB\xBF") && !bytes.contains('\0');
    require(!isJson || !fault.startsWith(QStringLiteral("body: no JSON")), "JSON is read");
    if (!model)
        return;
    const QJsonObject read = dictionary(*model);
    const bool isBeyondTheOther = written.is_discarded() && bytes.toLower().contains('e'); // 1e400
    require(isBeyondTheOther || isAsWritten(read, written, jsonType<Envelope>), "read as written");
    const auto again = decode<Envelope>(jsonText(read));
    require(again && dictionary(*again) == read, "comes back");
    qsizetype shown = 0;
    Dump(*again).write([&shown](QStringView piece) { shown += piece.size(); });
    require(shown > 0, "is shown");
}

} // namespace

void fuzz(const QByteArray &bytes)
{
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel) check<ResponseModel>,
    constexpr void (*checks[])(const QByteArray &) = { PARLOQUIN_API_CALLS(PARLOQUIN_ROW) };
#undef PARLOQUIN_ROW
    if (!bytes.isEmpty())
        checks[static_cast<std::uint8_t>(bytes[0] - '0') % std::size(checks)](bytes.sliced(1));
}
