#pragma once

#include "Parloquin/Reference/ParloquinExport.h"

extern "C" {
PARLOQUIN_EXPORT extern const double ParloquinVersionNumber;

PARLOQUIN_EXPORT extern const char ParloquinVersionString[];
}
