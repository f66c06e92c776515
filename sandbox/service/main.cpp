#include "sandbox/service/OutcomeReader.h"
#include "sandbox/service/Scenario.h"
#include "sandbox/service/Service.h"

#include <pthread.h>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>
#include <thread>

namespace {
constexpr auto usage = "usage: parloquin-sandbox [--port N] [--scenario FILE] [--print-scenario]\n"
                       "       [--fault CALL=FAULT]... [--faults PERCENT:SEED]\n";
constexpr int badUsage = 2;

struct Options {
    int port = 8046;
    std::string scenarioFile;
    bool printScenario = false;
    bool help = false;
    nlohmann::json faults = nlohmann::json::object(); // as the outcomes of a scenario
    sandbox::Weather weather;
    std::string fault; // of the options themselves
};

template <typename Number> bool isNumber(std::string_view text, Number &number)
{
    const auto *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return !text.empty() && result.ec == std::errc() && result.ptr == end;
}

bool isWeather(std::string_view text, sandbox::Weather &weather)
{
    const auto colon = std::min(text.find(':'), text.size());
    return isNumber(text.substr(0, colon), weather.percent) && weather.percent <= 100
        && isNumber(text.substr(std::min(colon + 1, text.size())), weather.seed);
}

Options optionsFrom(int argc, char **argv)
{
    Options options;
    for (int i = 1; i < argc && options.fault.empty(); ++i) {
        const std::string name = argv[i];
        const std::string value = i + 1 < argc ? argv[i + 1] : "";
        if (name == "--help") {
            options.help = true;
        } else if (name == "--print-scenario") {
            options.printScenario = true;
        } else if (name == "--scenario") {
            if (value.empty())
                options.fault = "--scenario: expected a file";
            options.scenarioFile = value;
            ++i;
        } else if (name == "--port") {
            if (!isNumber(value, options.port) || options.port < 0 || options.port > 65535)
                options.fault = "--port: expected a number from 0 to 65535";
            ++i;
        } else if (name == "--fault") {
            const auto equals = value.find('=');
            if (equals == value.npos)
                options.fault = "--fault: expected CALL=FAULT";
            else
                options.faults[value.substr(0, equals)].push_back(
                    { { "fault", value.substr(equals + 1) } });
            ++i;
        } else if (name == "--faults") {
            if (!isWeather(value, options.weather))
                options.fault = "--faults: expected PERCENT:SEED, such as 20:7";
            ++i;
        } else {
            options.fault = name + ": unknown option";
        }
    }
    return options;
}

int serve(sandbox::Scenario scenario, const Options &options)
{
    // Blocked before any thread starts, so that only the one below ever takes them.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    sandbox::Service service(std::move(scenario), options.weather);
    const auto port = service.bind(options.port);
    if (port < 0) {
        std::cerr << "parloquin-sandbox: port " << options.port
                  << " of 127.0.0.1: " << std::strerror(errno)
                  << "; stop what listens there, or choose another with --port\n";
        return EXIT_FAILURE;
    }
    std::thread watch([&] {
        int signal = 0;
        sigwait(&ending, &signal);
        service.stop();
    });
    std::cout << "parloquin-sandbox listens at 127.0.0.1:" << port << std::endl;
    if (options.weather.percent > 0)
        std::cout << "faults: " << options.weather.percent << " % of the calls, seed "
                  << options.weather.seed << std::endl;
    service.run();
    watch.join();
    std::cout << "parloquin-sandbox ends" << std::endl;
    return EXIT_SUCCESS;
}
}

int main(int argc, char **argv)
{
    const auto options = optionsFrom(argc, argv);
    if (!options.fault.empty()) {
        std::cerr << "parloquin-sandbox: " << options.fault << '\n' << usage;
        return badUsage;
    }
    if (options.help) {
        std::cout << usage;
        return EXIT_SUCCESS;
    }
    if (options.printScenario) {
        std::cout << sandbox::builtInScenarioText();
        return EXIT_SUCCESS;
    }
    try {
        auto scenario = options.scenarioFile.empty()
            ? sandbox::Scenario::builtIn()
            : sandbox::Scenario::fromFile(options.scenarioFile);
        for (auto &[call, list] : sandbox::readOutcomes({ options.faults, "--fault" }))
            scenario.outcomes[call] = std::move(list);
        return serve(std::move(scenario), options);
    } catch (const std::exception &error) {
        std::cerr << "parloquin-sandbox: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
