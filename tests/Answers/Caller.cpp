// A host that sends every call to the service at argv[1], one after another, and ends.
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/MainQueue.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QCoreApplication>

using namespace parloquin;

namespace {

void sendNext();

constexpr auto next = [](const auto &) { onMain(sendNext); };

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

// Between them: whatever JSON escapes, letters beyond ASCII, a plus sign, a missing field.
void (*const calls[])() = {
    [] { ApiRequest::initializer(next); },
    [] {
        ApiRequest::start({ text("tr"), text("Zoë's \"app\" 1/2 \x01\n🌀"),
                              text(R"({"kite:\/\/":"0","parlo:\/\/":"1"})") },
            next);
    },
    [] { ApiRequest::check({ text("ref/1") }, next); },
    [] {
        ApiRequest::sendOTP({ text("+905551234567"), {} }, next);
    },
    [] {
        ApiRequest::checkOTP({ text("5551234567"), text("TR"), text("A\\7"), text("r-2") }, next);
    },
    [] { // has no operation
        std::make_shared<ApiClient>()->request<CheckResponseModel>(
            ApiRouter::checkResult({ text("s-3") }), next);
    },
    [] { ApiRequest::country(next); },
};

void sendNext()
{
    static auto call = std::begin(calls);
    if (call == std::end(calls))
        QCoreApplication::quit();
    else
        (*call++)();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    setServiceHost(QString::fromLocal8Bit(argv[1]));
    onMain(sendNext);
    return QCoreApplication::exec();
}
