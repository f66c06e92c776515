#include "sandbox/exec/Exec.h"
#include "sandbox/service/Options.h"
#include "sandbox/service/Serve.h"

#include <cstdlib>
#include <exception>
#include <iostream>

namespace {
/// The words behind `exec`: options of the sandbox, then the host's command.
int runHost(const std::vector<std::string> &words, const sandbox::Options &options)
{
    const auto own = words.size() - options.command.size();
    return sandbox::exec(
        { words.begin(), words.begin() + static_cast<std::ptrdiff_t>(own) }, options.command);
}

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
    case Task::printSchema:
        std::cout << sandbox::scenarioSchemaText();
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
    std::vector<std::string> words(argv + 1, argv + argc);
    bool withHost = !words.empty() && words.front() == "exec";
    if (withHost)
        words.erase(words.begin());
    auto options = sandbox::optionsFrom(words);
    if (options.fault.empty() && !options.command.empty() && !withHost)
        options.fault = options.command.front() + ": unknown command";
    if (!options.fault.empty()) {
        std::cerr << "parloquin-sandbox: " << options.fault << "\nTry parloquin-sandbox --help.\n";
        return 2;
    }
    withHost &= options.task == sandbox::Options::Task::serve;
    try {
        return withHost ? runHost(words, options) : run(options);
    } catch (const std::exception &error) {
        std::cerr << "parloquin-sandbox: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
