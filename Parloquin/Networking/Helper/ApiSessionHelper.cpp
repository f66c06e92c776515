#include "Parloquin/Networking/Helper/ApiSessionHelper.h"

namespace parloquin {

class Reachability { };

ApiSessionHelper &ApiSessionHelper::shared()
{
    static ApiSessionHelper instance;
    return instance;
}

ApiSessionHelper::ApiSessionHelper() = default;
ApiSessionHelper::~ApiSessionHelper() = default;

void ApiSessionHelper::startObserver() { }

} // namespace parloquin
