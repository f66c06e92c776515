#include "sandbox/service/Options.h"

#include "sandbox/service/OutcomeReader.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

namespace sandbox {
namespace {
template <typename Number> bool isNumber(std::string_view text, Number &number)
{
    const auto *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

bool isPort(const std::string &text, int &port)
{
    constexpr int most = 65535;
    return isNumber(text, port) && port >= 0 && port <= most;
}

bool isWeather(std::string_view text, Weather &weather)
{
    const auto colon = std::min(text.find(':'), text.size());
    return isNumber(text.substr(0, colon), weather.percent) && weather.percent <= 100
        && isNumber(text.substr(std::min(colon + 1, text.size())), weather.seed);
}

struct Rule {
    std::string_view name;
    const char *value; ///< how the help calls it; null: the option has none
    const char *help;
    const char *expected; ///< of the value
    bool (*take)(Options &, const std::string &value);
};

template <Options::Task task> bool setTask(Options &options, const std::string &)
{
    options.task = task;
    return true;
}

bool setScenario(Options &options, const std::string &file)
{
    options.scenarioFile = file;
    return !file.empty();
}

const Rule rules[] = {
    { "--port", "N", "listen at port N of 127.0.0.1 (8046); 0 takes a free one",
        "a number from 0 to 65535",
        [](Options &options, const std::string &value) { return isPort(value, options.port); } },
    { "--page", "N", "show the page at port N (8047, or a free one if it is taken)",
        "a number from 0 to 65535",
        [](Options &options, const std::string &value) {
            options.pageGiven = true;
            return isPort(value, options.page);
        } },
    { "--scenario", "FILE", "play this scenario, and again whenever the file changes", "a file",
        setScenario },
    { "--fault", "CALL=FAULT",
        "meet the next request of CALL with FAULT; each one more is the next", "CALL=FAULT",
        [](Options &options, const std::string &value) {
            options.faults.push_back(value);
            return value.find('=') != value.npos;
        } },
    { "--faults", "PERCENT:SEED", "meet so many requests with faults drawn by SEED",
        "PERCENT:SEED, such as 20:7",
        [](Options &options, const std::string &value) {
            return isWeather(value, options.weather);
        } },
    { "--check", "FILE", "say whether FILE is a scenario, and where it is not", "a file",
        [](Options &options, const std::string &value) {
            options.task = Options::Task::check;
            return setScenario(options, value);
        } },
    { "--print-scenario", nullptr, "print the built-in scenario, to be saved and edited", "",
        setTask<Options::Task::printScenario> },
    { "--print-schema", nullptr, "print the JSON schema of scenarios, for editors", "",
        setTask<Options::Task::printSchema> },
    { "--version", nullptr, "print the version", "", setTask<Options::Task::version> },
    { "--help", nullptr, "print this", "", setTask<Options::Task::help> },
};
}

Options optionsFrom(const std::vector<std::string> &words)
{
    Options options;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (!word->starts_with('-')) {
            options.command.assign(word, words.end());
            break;
        }
        const auto *const rule = std::find_if(std::begin(rules), std::end(rules),
            [word](const Rule &each) { return each.name == *word; });
        if (rule == std::end(rules)) {
            options.fault = *word + ": unknown option";
            break;
        }
        const auto hasValue = rule->value != nullptr && std::next(word) != words.end();
        if (!rule->take(options, hasValue ? *++word : std::string())) {
            options.fault = std::string(rule->name) + ": expected " + rule->expected;
            break;
        }
    }
    return options;
}

std::string helpText()
{
    std::string text =
        "usage: parloquin-sandbox [OPTIONS]\n"
        "       parloquin-sandbox exec [OPTIONS] COMMAND...\n\n"
        "A verification service for developing: it listens at 127.0.0.1 only, judges\n"
        "every request and says why it refuses one. With exec it runs COMMAND, a host,\n"
        "with the sandbox and the stand-in messenger around it, and ends with it.\n\n";
    constexpr std::size_t column = 25;
    for (const auto &rule : rules) {
        auto line =
            "  " + std::string(rule.name) + (rule.value ? " " + std::string(rule.value) : "");
        line.resize(std::max(line.size() + 1, column), ' ');
        text += line + rule.help + '\n';
    }
    return text
        + "\nCalls for tests and scripts, scenarios and faults: see parloquin-sandbox(1).\n";
}

Scenario scenarioFor(const Options &options)
{
    auto scenario = options.scenarioFile.empty() ? Scenario::builtIn()
                                                 : Scenario::fromFile(options.scenarioFile);
    auto lists = nlohmann::json::object();
    for (const auto &fault : options.faults) {
        const auto equals = fault.find('=');
        lists[fault.substr(0, equals)].push_back({ { "fault", fault.substr(equals + 1) } });
    }
    for (auto &[key, list] : readOutcomes({ lists, "--fault" }))
        scenario.outcomes[key] = std::move(list);
    return scenario;
}

}
