// Loads the libraries named, one after another, and prints how long each took, in milliseconds.
#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <vector>

int main(int argc, char **argv)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> times;
    for (int i = 1; i < argc; ++i) {
        const auto before = Clock::now();
        if (!::dlopen(argv[i], RTLD_LAZY | RTLD_GLOBAL)) {
            std::fprintf(stderr, "%s\n", ::dlerror());
            return 1;
        }
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - before).count());
    }
    std::printf("{\"times\":[");
    for (std::size_t i = 0; i < times.size(); ++i)
        std::printf(i == 0 ? "%f" : ",%f", times[i]);
    std::printf("]}\n");
    return 0;
}
