#include "Parloquin/Networking/Helper/ApiResponseHelper.h"

#include "Parloquin/Extension/ParseJson.h"
#include "Parloquin/Manager/EncryptManager.h"

namespace parloquin {

namespace {

/// \return the text of a body that has nothing but `data`, as the service writes it, borrowed from
/// the body: such a text stands there as it is. Nothing for any other, which takes a parser.
std::optional<QByteArrayView> textOfPlainBody(QByteArrayView body)
{
    constexpr QByteArrayView before = R"({"data":")";
    constexpr QByteArrayView after = R"("})";
    if (body.size() < before.size() + after.size() || !body.startsWith(before)
        || !body.endsWith(after))
        return {};
    const QByteArrayView text = body.sliced(before.size()).chopped(after.size());
    uchar other = 0; // of all, and without a way out: so a compiler takes many at once
    for (const uchar c : text)
        other |= c < ' ' || c > '~' || c == '"' || c == '\\';
    return other == 0 ? std::optional(text) : std::nullopt;
}

} // namespace

bool ApiResponseHelper::checkResponseJsonEncryptedStatus(
    const std::optional<HeaderFields> &headerFields) const
{
    if (!headerFields)
        return false;
    for (const auto &[name, value] : *headerFields) {
        if (name.compare("X-TRZ-Encrypted", Qt::CaseInsensitive) == 0)
            return value == "1"; // only the first such field counts
    }
    return false;
}

std::optional<QByteArray> ApiResponseHelper::getData(const QByteArray &body) const
{
    if (const auto text = textOfPlainBody(body))
        return EncryptManager::shared().decrypt(*text);

    simdjson::dom::document document;
    simdjson::dom::object object;
    if (parseJson(document, body).get_object().get(object) != simdjson::SUCCESS)
        return {};

    std::optional<QByteArrayView> data;
    for (const simdjson::dom::key_value_pair pair : object) {
        std::string_view text;
        if (pair.value.get_string().get(text) != simdjson::SUCCESS)
            return {};
        if (pair.key == "data")
            data = QByteArrayView(text.data(), static_cast<qsizetype>(text.size()));
    }
    return data ? EncryptManager::shared().decrypt(*data) : std::nullopt;
}

} // namespace parloquin
