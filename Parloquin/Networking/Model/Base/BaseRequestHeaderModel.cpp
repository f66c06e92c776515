#include "Parloquin/Networking/Model/Base/BaseRequestHeaderModel.h"

#include "Parloquin/Platform/Device.h"
#include "Parloquin/Platform/Fatal.h"
#include "Parloquin/Platform/InfoDictionary.h"

namespace parloquin {

BaseRequestHeaderModel::BaseRequestHeaderModel(EncryptedState encryptedState)
    : userAgent(QStringLiteral("iOS"))
    , os(QStringLiteral("ios ") + Device::systemVersion())
    , sdkVersion(QStringLiteral("1.0"))
    , clientDeviceID(Device::identifierForVendor())
    , lang(Device::languageCode())
    , timeStamp(timeStampText(std::chrono::system_clock::now()))
    , encrypted(encryptedState)
    , clientKey(infoDictionaryText(QStringLiteral("ParloquinKey")).value_or(QString()))
{
}

QString BaseRequestHeaderModel::timeStampText(std::chrono::system_clock::time_point now)
{
    using namespace std::chrono;
    if (now.time_since_epoch() < system_clock::duration::zero())
        fatal(QStringLiteral("the clock is before 1970 and no request can be dated; set it"));
    return QString::number(milliseconds(duration_cast<seconds>(now.time_since_epoch())).count());
}

} // namespace parloquin
