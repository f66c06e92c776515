#include "Parloquin/Platform/NotificationCenter.h"

namespace parloquin {

NotificationCenter *NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return &center;
}

} // namespace parloquin
