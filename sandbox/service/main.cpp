#include "sandbox/service/Options.h"
#include "sandbox/service/Serve.h"

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {
int run(const sandbox::Options &options)
{
    using Task = sandbox::Options::Task;
    switch (options.task) {
    case Task::help:
        std::cout << sandbox::helpText();
        return EXIT_SUCCESS;
    case Task::version:
        std::cout << "parloquin-sandbox " SANDBOX_VERSION "\n";
        return EXIT_SUCCESS;
    case Task::printScenario:
        std::cout << sandbox::builtInScenarioText();
        return EXIT_SUCCESS;
    case Task::check:
        sandbox::scenarioFor(options);
        std::cout << options.scenarioFile << ": a right scenario\n";
        return EXIT_SUCCESS;
    case Task::serve:
        break;
    }
    return sandbox::serve(sandbox::scenarioFor(options), options);
}
}

int main(int argc, char **argv)
{
    auto options = sandbox::optionsFrom({ argv + 1, argv + argc });
    if (options.fault.empty() && !options.command.empty())
        options.fault = options.command.front() + ": unknown command";
    if (!options.fault.empty()) {
        std::cerr << "parloquin-sandbox: " << options.fault << "\nTry parloquin-sandbox --help.\n";
        return 2;
    }
    try {
        return run(options);
    } catch (const std::exception &error) {
        std::cerr << "parloquin-sandbox: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
