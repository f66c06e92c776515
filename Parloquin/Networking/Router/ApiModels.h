#pragma once

/// \file
/// What goes out and comes back in every call, for those few who deal with all of them.

#include "Parloquin/Networking/Model/Request/CheckOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Request/CheckResultRequestModel.h"
#include "Parloquin/Networking/Model/Request/CountryRequestModel.h"
#include "Parloquin/Networking/Model/Request/InitRequestModel.h"
#include "Parloquin/Networking/Model/Request/SendOtpRequestModel.h"
#include "Parloquin/Networking/Model/Request/StartRequestModel.h"
#include "Parloquin/Networking/Model/Response/CheckOtpResponseModel.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Model/Response/InitResponseModel.h"
#include "Parloquin/Networking/Model/Response/SendOtpResponseModel.h"
#include "Parloquin/Networking/Model/Response/StartResponseModel.h"
