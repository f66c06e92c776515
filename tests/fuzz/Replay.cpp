// Runs a target once with each file of a folder.
#include "fuzz/Fuzz.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char **argv)
{
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        std::fprintf(stderr, "%s\n", entry.path().c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
        ++count;
    }
    std::fprintf(stderr, "%d inputs\n", count);
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
