#pragma once

#include <chrono>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

/// \throws ScenarioError saying where \p text is no JSON
nlohmann::json jsonIn(const std::string &text);

/// \brief One value of a scenario together with its path, which every complaint names.
///
/// Borrows the value: it lives no longer than the document.
class ScenarioReader {
public:
    ScenarioReader(const nlohmann::json &value, std::string path);

    /// \throws ScenarioError naming this path
    [[noreturn]] void fail(const std::string &complaint) const;

    /// An object with none but these keys: a mistyped key must not pass for a default.
    void expectKeys(std::initializer_list<std::string_view> keys) const;
    bool has(std::string_view key) const;
    /// \throws ScenarioError when the key is missing
    ScenarioReader at(std::string_view key) const;
    std::vector<ScenarioReader> items() const;
    std::vector<std::string> keys() const;

    bool isNull() const { return m_value.is_null(); }
    bool isText() const { return m_value.is_string(); }
    bool isList() const { return m_value.is_array(); }
    std::string json() const { return m_value.dump(); }
    std::string text() const;
    std::string nonEmptyText() const;
    /// Nothing for null and for a missing key.
    std::optional<std::string> optionalText(std::string_view key) const;
    bool flag() const;
    int number(int least, int most) const;

private:
    const nlohmann::json &m_value;
    std::string m_path;
};

}
