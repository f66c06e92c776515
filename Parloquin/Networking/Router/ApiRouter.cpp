#include "Parloquin/Networking/Router/ApiRouter.h"

namespace parloquin {

QString ApiRouter::path() const
{
    switch (route()) {
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    case Route::name:                                                                              \
        return QStringLiteral(path);
        PARLOQUIN_API_CALLS(PARLOQUIN_ROW)
#undef PARLOQUIN_ROW
    }
    return {};
}

QByteArray ApiRouter::method() const { return QByteArrayLiteral("POST"); }

} // namespace parloquin
