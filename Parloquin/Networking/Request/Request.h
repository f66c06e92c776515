#pragma once

#include "Parloquin/Networking/Client/Result.h"
#include "Parloquin/Networking/Router/ApiCalls.h"

namespace parloquin {

/// \brief The calls to the service, one operation each, of the route's name.
///
/// Called on the main thread. The completion runs exactly once: on the network thread, or at once
/// on the calling thread when the network is known to be unreachable. `initializer` and `country`
/// say by themselves what there is to say: the device's name and places.
class ApiRequest {
public:
#define PARLOQUIN_given(name, RequestModel, ResponseModel)                                         \
    static void name(const RequestModel &requestModel, Completion<ResponseModel> completion);
#define PARLOQUIN_own(name, RequestModel, ResponseModel)                                           \
    static void name(Completion<ResponseModel> completion);
#define PARLOQUIN_none(name, RequestModel, ResponseModel)
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    PARLOQUIN_##takes(name, RequestModel, ResponseModel)
    PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW
#undef PARLOQUIN_none
#undef PARLOQUIN_own
#undef PARLOQUIN_given
};

} // namespace parloquin
