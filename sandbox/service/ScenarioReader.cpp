#include "sandbox/service/ScenarioReader.h"

#include "sandbox/service/Scenario.h"

#include <algorithm>
#include <cmath>

namespace sandbox {

nlohmann::json jsonIn(const std::string &text)
{
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception &error) { // a number out of range is no parse error
        // The library's own code and class lead its message; the place and the complaint follow.
        const std::string what = error.what();
        throw ScenarioError(what.substr(what.find("] ") + 2));
    }
}

ScenarioReader::ScenarioReader(const nlohmann::json &value, std::string path)
    : m_value(value)
    , m_path(std::move(path))
{
}

void ScenarioReader::fail(const std::string &complaint) const
{
    throw ScenarioError((m_path.empty() ? "scenario" : m_path) + ": " + complaint);
}

void ScenarioReader::expectKeys(std::initializer_list<std::string_view> keys) const
{
    if (!m_value.is_object())
        fail("expected an object");
    for (const auto &[key, value] : m_value.items())
        if (std::find(keys.begin(), keys.end(), key) == keys.end())
            ScenarioReader(value, m_path.empty() ? key : m_path + "." + key).fail("unknown field");
}

bool ScenarioReader::has(std::string_view key) const
{
    return m_value.is_object() && m_value.contains(std::string(key));
}

ScenarioReader ScenarioReader::at(std::string_view key) const
{
    auto path = m_path.empty() ? std::string(key) : m_path + "." + std::string(key);
    if (!m_value.is_object())
        fail("expected an object");
    const auto found = m_value.find(std::string(key));
    if (found == m_value.end())
        throw ScenarioError(path + ": missing");
    return { *found, std::move(path) };
}

std::vector<ScenarioReader> ScenarioReader::items() const
{
    if (!m_value.is_array())
        fail("expected a list");
    std::vector<ScenarioReader> list;
    for (std::size_t i = 0; i < m_value.size(); ++i)
        list.emplace_back(m_value[i], m_path + "[" + std::to_string(i) + "]");
    return list;
}

std::vector<std::string> ScenarioReader::keys() const
{
    if (!m_value.is_object())
        fail("expected an object");
    std::vector<std::string> list;
    for (const auto &item : m_value.items())
        list.push_back(item.key());
    return list;
}

std::string ScenarioReader::text() const
{
    if (!m_value.is_string())
        fail("expected text");
    return m_value.get<std::string>();
}

std::string ScenarioReader::nonEmptyText() const
{
    auto value = text();
    if (value.empty())
        fail("empty");
    return value;
}

std::optional<std::string> ScenarioReader::optionalText(std::string_view key) const
{
    if (!has(key) || at(key).m_value.is_null())
        return std::nullopt;
    return at(key).text();
}

bool ScenarioReader::flag() const
{
    if (!m_value.is_boolean())
        fail("expected true or false");
    return m_value.get<bool>();
}

int ScenarioReader::number(int least, int most) const
{
    const auto complain = [&] {
        fail("expected a whole number from " + std::to_string(least) + " to "
            + std::to_string(most));
    };
    const auto value = m_value.is_number() ? m_value.get<double>() : least - 1.0;
    if (value < least || value > most || value != std::trunc(value))
        complain();
    return static_cast<int>(value);
}

}
