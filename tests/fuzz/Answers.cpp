// What any answer to a call comes to: exactly one outcome, whole; or a picture, if it is one.
#include "Parloquin/Extension/QImage+Extension.h"
#include "Parloquin/Networking/Client/ApiClient.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Helper/Reachability.h"
#include "Parloquin/Networking/Router/ApiModels.h"
#include "Parloquin/Networking/Router/ServiceEndpoint.h"
#include "fuzz/Fuzz.h"

#include <QtWidgets/QApplication>

namespace parloquin {

// A network and a session that stand in for the kit's: what is set here is there at once.
static std::optional<QByteArray> data;
static std::optional<UrlResponse> response;
static std::optional<TransportError> error;

struct UrlSession::Private { };
UrlSession::UrlSession() = default;
UrlSession::~UrlSession() = default;
UrlSession &UrlSession::shared()
{
    static UrlSession session;
    return session;
}
std::shared_ptr<UrlSessionTask> UrlSession::dataTask(UrlRequest, Handler handler, qint64)
{
    handler(data, response, error);
    return std::make_shared<UrlSessionTask>(UrlSessionTask());
}
void UrlSessionTask::resume() { }
void UrlSessionTask::cancel() { }
ApiSessionHelper::ApiSessionHelper(std::shared_ptr<Reachability>) { }
ApiSessionHelper::~ApiSessionHelper() = default;
ApiSessionHelper &ApiSessionHelper::shared()
{
    static ApiSessionHelper helper({});
    return helper;
}

static void setAnswer(char kind, const QByteArray &http)
{
    const auto end = http.indexOf("\r\n\r\n");
    const auto lines = http.left(end).split('\n');
    response = UrlResponse { lines[0].mid(9, 3).toInt(), {}, {} };
    for (const QByteArray &line : lines.mid(1)) {
        const auto colon = line.indexOf(':');
        response->headers.append({ line.left(colon), line.mid(colon + 1).trimmed() });
        if (response->headers.last().first.toLower() == "content-type")
            response->mimeType = response->headers.last().second.toLower();
    }
    data = end < 0 ? QByteArray("") : http.mid(end + 4);
    error.reset();
    constexpr int codes[] = { TransportError::notConnectedToInternet, 4, TransportError::timedOut };
    if (kind == '1' || kind == '2')
        error = TransportError { codes[http.size() % 3], QStringLiteral("why") };
    if (kind >= '1' && kind <= '3')
        data.reset();
    if (kind == '2')
        response.reset();
}

template <class T> static void call()
{
    const auto client = std::make_shared<ApiClient>();
    int count = 0;
    std::optional<ApiError> failure;
    client->request<T>(ApiRouter::check({ QStringLiteral("r") }), [&](const Result<T> &result) {
        ++count;
        failure = result.error() ? std::optional(*result.error()) : std::nullopt;
    });
    auto expected = client->transportFailure(data, response, error);
    if (!expected) {
        const ApiResponseHelper &helper = client->apiResponseHelper;
        const bool isEncrypted = helper.checkResponseJsonEncryptedStatus(response->headers);
        const auto plain = isEncrypted ? helper.getData(*data) : std::nullopt;
        if (!decode<BaseResponseModel<T>>(plain.value_or(*data)))
            expected = ApiError::jsonDecode;
    }
    require(count == 1 && failure == expected, "one outcome, a success only of a whole envelope");
}

static void picture()
{
    ImageView view;
    download(
        &view, QUrl(QStringLiteral("http://127.0.0.1/")), ContentMode::aspectFit, serviceTimeout());
    QCoreApplication::sendPostedEvents();
    const QSize size = view.image().size();
    if (size.isEmpty())
        return;
    require(data && response->statusCode == 200, "an answer with a picture");
    require(response->mimeType.startsWith("image"), "that says so");
    require(data->startsWith("\x89PNG\r\n") || data->startsWith("\xff\xd8\xff"), "a PNG or JPEG");
    require(size.width() <= 1024 && size.height() <= 1024, "of a fair size");
}

} // namespace parloquin

void fuzz(const QByteArray &bytes)
{
    using namespace parloquin;
#define PARLOQUIN_ROW(takes, name, path, RequestModel, ResponseModel) call<ResponseModel>,
    constexpr void (*calls[])() = { PARLOQUIN_API_CALLS(PARLOQUIN_ROW) };
#undef PARLOQUIN_ROW
    static char name[] = "fuzz", option[] = "-platform", platform[] = "offscreen";
    static char *arguments[] = { name, option, platform, nullptr };
    static int count = 3;
    static const QApplication app(count, arguments);
    if (bytes.size() < 2)
        return;
    setAnswer(bytes[1], bytes.sliced(2));
    if (bytes[0] == 'p')
        picture();
    else
        calls[static_cast<std::uint8_t>(bytes[0] - '0') % std::size(calls)]();
}
