#pragma once

/// \file
/// What goes out in every call.

#include "Parloquin/Networking/Model/Request/CheckOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckResultRequestModel.h"
#include "Parloquin/Networking/Model/Request/CountryRequestModel.h"
#include "Parloquin/Networking/Model/Request/InitRequestModel.h"
#include "Parloquin/Networking/Model/Request/SendOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/StartRequestModel.h"
