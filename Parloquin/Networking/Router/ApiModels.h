#pragma once

/// \file
/// What goes out and comes back in every call, for those few who deal with all of them.

#include "Parloquin/Networking/Model/Response/CheckOtpResponseModel.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Networking/Model/Response/SendOtpResponseModel.h"
#include "Parloquin/Networking/Model/Response/StartResponseModel.h"
#include "Parloquin/Networking/Router/ApiRequestModels.h"
