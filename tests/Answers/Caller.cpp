// A host that sends every call to the service at argv[1], one after another, and ends. argv[2]
// "whole": with every field there is; "return": it quits when a byte comes on standard input;
// "exit": so too, but without returning from main().
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "Parloquin/Platform/MainQueue.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace parloquin;

namespace {

bool isWhole = false;

void sendNext();

constexpr auto next = [](const auto &) {
    std::fputs("completed\n", stderr);
    onMain(sendNext);
};

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

// What each call sends. Between them: whatever JSON escapes, letters beyond ASCII, a plus sign, a
// missing field. A call that is not here does not link.
template <class RequestModel> RequestModel sample();
template <> StartRequestModel sample()
{
    return { text("tr"), text("Zoë's \"app\" 1/2 \x01\n🌀"),
        text(R"({"kite:\/\/":"0","parlo:\/\/":"1"})") };
}
template <> CheckRequestModel sample() { return { text("ref/1") }; }
template <> SendOtpRequestModel sample()
{
    return { text("+905551234567"), isWhole ? std::optional(text("TR")) : std::nullopt };
}
template <> CheckOtpRequestModel sample()
{
    return { text("5551234567"), text("TR"), text("A\\7"), text("r-2") };
}
template <> CheckResultRequestModel sample() { return { text("s-3") }; }

#define PARLOQUIN_given(name, RequestModel, ResponseModel)                                         \
    ApiRequest::name(sample<RequestModel>(), next)
#define PARLOQUIN_own(name, RequestModel, ResponseModel) ApiRequest::name(next)
#define PARLOQUIN_none(name, RequestModel, ResponseModel)                                          \
    std::make_shared<ApiClient>()->request<ResponseModel>(                                         \
        ApiRouter::name(sample<RequestModel>()), next)
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel)                              \
    [] { PARLOQUIN_##takes(name, RequestModel, ResponseModel); },
void (*const calls[])() = { PARLOQUIN_API_CALLS(PARLOQUIN_ROW) };
#undef PARLOQUIN_ROW

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
    const std::string how = argc > 2 ? argv[2] : "";
    isWhole = how == "whole";
    setServiceHost(QString::fromLocal8Bit(argv[1]));
    QSocketNotifier told(STDIN_FILENO, QSocketNotifier::Read);
    told.setEnabled(how == "return" || how == "exit");
    QObject::connect(&told, &QSocketNotifier::activated, &app, [&how] {
        if (how == "exit")
            std::exit(0);
        QCoreApplication::quit();
    });
    onMain(sendNext);
    return QCoreApplication::exec();
}
