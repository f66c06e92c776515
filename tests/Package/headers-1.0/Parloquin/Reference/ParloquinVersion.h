#pragma once

#include "Parloquin/Reference/ParloquinExport.h"

extern "C" {

/// \brief Version of the library as a number: 1.0.
/// \since 1.0
PARLOQUIN_EXPORT extern const double ParloquinVersionNumber;

/// \brief Version banner, NUL-terminated UTF-8; it ends in the version, "1.0.0".
/// \since 1.0
PARLOQUIN_EXPORT extern const char ParloquinVersionString[];
}
