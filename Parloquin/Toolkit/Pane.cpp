#include "Parloquin/Toolkit/Pane.h"
