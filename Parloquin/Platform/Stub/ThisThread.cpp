#include "Parloquin/Platform/ThisThread.h"

namespace parloquin {

void ThisThread::introduce(const QString & /*label*/, QualityOfService /*qos*/) { }

} // namespace parloquin
