#include "Parloquin/Protocol/ParloquinDelegate.h"

ParloquinDelegate::~ParloquinDelegate() = default;
