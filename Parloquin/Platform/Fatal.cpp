#include "Parloquin/Platform/Fatal.h"

#include <cstdio>
#include <cstdlib>

namespace parloquin {

void fatal(const QString &message)
{
    std::fflush(stdout);
    std::fprintf(stderr, "Parloquin: %s\n", message.toUtf8().constData());
    std::fflush(stderr);
    std::abort();
}

} // namespace parloquin
