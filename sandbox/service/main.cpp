#include "sandbox/service/Scenario.h"
#include "sandbox/service/Service.h"

#include <pthread.h>

#include <charconv>
#include <csignal>
#include <cstring>
#include <iostream>
#include <optional>
#include <thread>

namespace {
constexpr auto usage = "usage: parloquin-sandbox [--port N] [--scenario FILE] [--print-scenario]\n";
constexpr int badUsage = 2;

struct Options {
    int port = 8046;
    std::string scenarioFile;
    bool printScenario = false;
    bool help = false;
    std::string fault;
};

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
            const auto *end = value.data() + value.size();
            const auto result = std::from_chars(value.data(), end, options.port);
            if (value.empty() || result.ec != std::errc() || result.ptr != end || options.port < 0
                || options.port > 65535)
                options.fault = "--port: expected a number from 0 to 65535";
            ++i;
        } else {
            options.fault = name + ": unknown option";
        }
    }
    return options;
}

int serve(sandbox::Scenario scenario, int wantedPort)
{
    // Blocked before any thread starts, so that only the one below ever takes them.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    sandbox::Service service(std::move(scenario));
    const auto port = service.bind(wantedPort);
    if (port < 0) {
        std::cerr << "parloquin-sandbox: port " << wantedPort
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
    const auto served = service.run();
    if (!served)
        ::kill(::getpid(), SIGTERM); // the watch ends too
    watch.join();
    std::cout << "parloquin-sandbox ends" << std::endl;
    return served ? EXIT_SUCCESS : EXIT_FAILURE;
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
        return serve(options.scenarioFile.empty()
                ? sandbox::Scenario::builtIn()
                : sandbox::Scenario::fromFile(options.scenarioFile),
            options.port);
    } catch (const std::exception &error) {
        std::cerr << "parloquin-sandbox: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
