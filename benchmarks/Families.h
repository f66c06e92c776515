#pragma once

#include "Report.h"

/// The families of cases, a file each; what they measure stands at the top of that file.
void measureLibrary(Report &report);
void measureMessages(Report &report);
