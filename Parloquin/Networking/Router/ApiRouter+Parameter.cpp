#include "Parloquin/Networking/Router/ApiRouter.h"

#include "Parloquin/Extension/Encodable+Extension.h"

namespace parloquin {

QJsonObject ApiRouter::parameters() const
{
    return std::visit([](const auto &model) { return dictionary(model); }, m_model);
}

} // namespace parloquin
