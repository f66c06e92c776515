#include "sandbox/service/Serve.h"

#include "sandbox/service/FileWatch.h"
#include "sandbox/service/PageServer.h"
#include "sandbox/service/Service.h"

#include <pthread.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>
#include <thread>

namespace sandbox {
namespace {
int portIsTaken(int port, const char *option)
{
    std::cerr << "parloquin-sandbox: port " << port << " of 127.0.0.1: " << std::strerror(errno)
              << "; stop what listens there, or choose another with " << option << '\n';
    return EXIT_FAILURE;
}

/// A scenario that cannot be read is said, and the one before stays.
void playAgain(Sandbox &sandbox, const Options &options)
{
    try {
        sandbox.play(scenarioFor(options));
        sandbox.console.say("scenario", "read again: " + options.scenarioFile);
    } catch (const std::exception &error) {
        sandbox.console.say("scenario", std::string("the one before stays: ") + error.what());
    }
}
}

int serve(Scenario scenario, const Options &options)
{
    // Blocked before any thread starts, so that only the one below ever takes them.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    Sandbox sandbox(std::move(scenario), options.weather);
    Service service(sandbox);
    if (!service.bind(options.port))
        return portIsTaken(options.port, "--port");
    // Made anew for another port: the library may bind no server that once could not be bound.
    std::optional<PageServer> page(std::in_place, sandbox);
    if (!page->bind(options.page) && (options.pageGiven || !page.emplace(sandbox).bind(0)))
        return portIsTaken(options.page, "--page");

    std::thread watch([&] {
        int signal = 0;
        sigwait(&ending, &signal);
        sandbox.stop();
        page->stop();
        service.stop();
    });
    std::thread pages([&page] { page->run(); });
    // Before it is said to listen: who hears of that may change the scenario at once.
    std::optional<FileWatch> scenarioFile;
    if (!options.scenarioFile.empty())
        scenarioFile.emplace(options.scenarioFile, [&] { playAgain(sandbox, options); });
    std::cout << "parloquin-sandbox listens at 127.0.0.1:" << sandbox.port << std::endl;
    std::cout << "its page is at http://127.0.0.1:" << sandbox.pagePort << "/" << std::endl;
    if (options.weather.percent > 0)
        std::cout << "faults: " << options.weather.percent << " % of the calls, seed "
                  << options.weather.seed << std::endl;
    service.run();
    scenarioFile.reset();
    pages.join();
    watch.join();
    std::cout << "parloquin-sandbox ends" << std::endl;
    return EXIT_SUCCESS;
}

}
