#include "sandbox/service/Serve.h"

#include "sandbox/service/Service.h"

#include <pthread.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <thread>

namespace sandbox {

int serve(Scenario scenario, const Options &options)
{
    // Blocked before any thread starts, so that only the one below ever takes them.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);

    Service service(std::move(scenario), options.weather);
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
