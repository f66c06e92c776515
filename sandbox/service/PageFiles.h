#pragma once

#include <string>
#include <vector>

namespace sandbox {

struct PageFile {
    std::string name; ///< "main.js"
    std::string text;
};

/// The files of the page. Compiled in, so that nothing is read from the disk.
const std::vector<PageFile> &pageFiles();

}
