#include "sandbox/service/Serve.h"

#include "sandbox/service/PageServer.h"
#include "sandbox/service/Service.h"

#include <pthread.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <thread>

namespace sandbox {
namespace {
int portIsTaken(int port, const char *option)
{
    std::cerr << "parloquin-sandbox: port " << port << " of 127.0.0.1: " << std::strerror(errno)
              << "; stop what listens there, or choose another with " << option << '\n';
    return EXIT_FAILURE;
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
    PageServer page(sandbox);
    if (!page.bind(options.page) && (options.pageGiven || !page.bind(0)))
        return portIsTaken(options.page, "--page");

    std::thread watch([&] {
        int signal = 0;
        sigwait(&ending, &signal);
        sandbox.stop();
        page.stop();
        service.stop();
    });
    std::thread pages([&page] { page.run(); });
    std::cout << "parloquin-sandbox listens at 127.0.0.1:" << sandbox.port << std::endl;
    std::cout << "its page is at http://127.0.0.1:" << sandbox.pagePort << "/" << std::endl;
    if (options.weather.percent > 0)
        std::cout << "faults: " << options.weather.percent << " % of the calls, seed "
                  << options.weather.seed << std::endl;
    service.run();
    pages.join();
    watch.join();
    std::cout << "parloquin-sandbox ends" << std::endl;
    return EXIT_SUCCESS;
}

}
