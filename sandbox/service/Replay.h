#pragma once

#include "sandbox/service/Exchange.h"
#include "sandbox/service/Scenario.h"

namespace sandbox {

/// Sends the request of \p exchange to the service at \p port again, as a client would.
/// \param keys with which it is signed anew, now; null: every byte as it was
/// \return the status of the answer; 0 when there was none
int replay(const Exchange &exchange, int port, const Keys *keys);

}
