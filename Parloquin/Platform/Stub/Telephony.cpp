#include "Parloquin/Platform/Telephony.h"

namespace parloquin {

struct Telephony::Private { };

Telephony::Telephony() = default;
Telephony::~Telephony() = default;

Telephony &Telephony::shared()
{
    static Telephony instance;
    return instance;
}

void Telephony::ask() { }

std::optional<QString> Telephony::isoCountryCode() const { return QStringLiteral("gb"); }

} // namespace parloquin
