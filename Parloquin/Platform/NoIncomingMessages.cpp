#include "Parloquin/Platform/IncomingMessages.h"

// Of a kit that is built to read no messages, or for a system that gives none away.
namespace parloquin {

struct IncomingMessages::Private { };

IncomingMessages::IncomingMessages(Heard) { } // NOLINT(performance-unnecessary-value-param)
IncomingMessages::~IncomingMessages() = default;

} // namespace parloquin
