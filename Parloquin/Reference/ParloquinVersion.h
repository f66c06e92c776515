#pragma once

#include "Parloquin/Reference/ParloquinExport.h"

/// \brief Version of the package whose headers these are, as one number: later is larger, also 1.10
/// after 1.9.
///
/// \code
/// #if PARLOQUIN_VERSION >= PARLOQUIN_VERSION_CHECK(1, 2, 0)
/// \endcode
/// \since 1.1
#define PARLOQUIN_VERSION PARLOQUIN_VERSION_CHECK(1, 1, 0)

/// \brief What PARLOQUIN_VERSION is in a version; each part is below 256.
/// \since 1.1
#define PARLOQUIN_VERSION_CHECK(major, minor, patch) (((major) << 16) | ((minor) << 8) | (patch))

extern "C" {

/// \brief Version of the protocol that the kit speaks, as a number: 1.0. Packages of any later
/// version carry it too; tell those apart by PARLOQUIN_VERSION.
/// \since 1.0
PARLOQUIN_EXPORT extern const double ParloquinVersionNumber;

/// \brief Version banner, NUL-terminated UTF-8; it ends in the same version, "1.0.0".
/// \since 1.0
PARLOQUIN_EXPORT extern const char ParloquinVersionString[];
}
