#include "Parloquin/Networking/Helper/ApiResponseHelper.h"

#include "Parloquin/Extension/ParseJson.h"
#include "Parloquin/Manager/EncryptManager.h"

namespace parloquin {

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
    simdjson::dom::parser parser;
    simdjson::dom::object object;
    if (parseJson(parser, body).get_object().get(object) != simdjson::SUCCESS)
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
