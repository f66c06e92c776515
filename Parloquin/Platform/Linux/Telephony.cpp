#include "Parloquin/Platform/Telephony.h"

namespace parloquin {

struct Telephony::Private {
    std::optional<QString> isoCountryCode;
};

Telephony::Telephony()
    : d(std::make_unique<Private>())
{
}

Telephony::~Telephony() = default;

Telephony &Telephony::shared()
{
    static Telephony instance;
    return instance;
}

void Telephony::ask() { }

std::optional<QString> Telephony::isoCountryCode() const { return d->isoCountryCode; }

} // namespace parloquin
