#include "Parloquin/Transport/UrlRequest.h"

#include <algorithm>

namespace parloquin {

namespace {

template <class Fields> auto find(Fields &fields, const QByteArray &name)
{
    return std::find_if(fields.begin(), fields.end(),
        [&name](const auto &field) { return field.first.compare(name, Qt::CaseInsensitive) == 0; });
}

// What is here is written to the wire as it is: a line break in a host's key would start a field of
// its own.
QByteArray sendable(QByteArray value)
{
    if (value.isEmpty())
        return { "", 0 };
    const auto isBreak = [](char c) { return c == '\r' || c == '\n' || c == '\0'; };
    if (std::none_of(value.cbegin(), value.cend(), isBreak))
        return value;
    std::replace_if(value.begin(), value.end(), isBreak, ' ');
    return value.trimmed();
}

} // namespace

void UrlRequest::setHeader(const QByteArray &name, const QByteArray &value)
{
    if (const auto known = find(headers, name); known != headers.end())
        known->second = sendable(value);
    else
        headers.append({ name, sendable(value) });
}

void UrlRequest::addHeader(const QByteArray &name, const QByteArray &value)
{
    if (const auto known = find(headers, name); known != headers.end())
        known->second += ',' + sendable(value);
    else
        headers.append({ name, sendable(value) });
}

std::optional<QByteArray> UrlRequest::header(const QByteArray &name) const
{
    const auto known = find(headers, name);
    return known == headers.cend() ? std::nullopt : std::optional(known->second);
}

} // namespace parloquin
