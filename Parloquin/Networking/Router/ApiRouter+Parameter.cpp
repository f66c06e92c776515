#include "Parloquin/Networking/Router/ApiRouter.h"

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Networking/Router/ApiRequestModels.h"

namespace parloquin {

#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    ApiRouter ApiRouter::name(const RequestModel &model)                                           \
    {                                                                                              \
        return { Route::name, dictionary(model) };                                                 \
    }
PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW

} // namespace parloquin
