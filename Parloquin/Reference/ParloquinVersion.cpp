#include "Parloquin/Reference/ParloquinVersion.h"

static_assert(PARLOQUIN_VERSION == PARLOQUIN_PACKAGE_VERSION,
    "ParloquinVersion.h and CMakeLists.txt name the same version");

const double ParloquinVersionNumber = 1.0;
const char ParloquinVersionString[] = "Parloquin phone-number verification 1.0.0";
