#include "Parloquin/Networking/Router/ApiRouter.h"

namespace parloquin {

QString ApiRouter::path() const
{
    switch (route()) {
    case Route::initializer:
        return QStringLiteral("init");
    case Route::start:
        return QStringLiteral("start");
    case Route::check:
        return QStringLiteral("check");
    case Route::sendOTP:
        return QStringLiteral("send-otp");
    case Route::checkOTP:
        return QStringLiteral("check-otp");
    case Route::checkResult:
        return QStringLiteral("result");
    case Route::country:
        return QStringLiteral("country");
    }
    return {};
}

QByteArray ApiRouter::method() const { return QByteArrayLiteral("POST"); }

} // namespace parloquin
