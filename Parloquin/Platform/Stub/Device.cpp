#include "Parloquin/Platform/Device.h"

namespace parloquin {

QString Device::name() { return QStringLiteral("Stub"); }
QString Device::systemVersion() { return QStringLiteral("1"); }
QString Device::identifierForVendor()
{
    return QStringLiteral("00000000-0000-4000-8000-000000000000");
}
QString Device::languageCode() { return QStringLiteral("en"); }
QString Device::regionCode() { return QStringLiteral("GB"); }
QString Device::timeZone() { return QStringLiteral("Etc/UTC"); }

} // namespace parloquin
