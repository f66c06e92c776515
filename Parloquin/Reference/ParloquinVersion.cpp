#include "Parloquin/Reference/ParloquinVersion.h"

const double ParloquinVersionNumber = 1.0;
const char ParloquinVersionString[] = "Parloquin phone-number verification 1.0.0";
