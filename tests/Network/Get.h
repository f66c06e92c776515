#pragma once

#include "Network/Awaited.h"
#include "Parloquin/Transport/UrlSession.h"

/// "200 image/png 4" of a whole answer, else "error -1005", with the status where there is one.
inline std::string shown(const std::optional<QByteArray> &data,
    const std::optional<parloquin::UrlResponse> &response,
    const std::optional<parloquin::TransportError> &error)
{
    std::string text = response ? std::to_string(response->statusCode) + ' ' : "";
    if (data && response)
        text += response->mimeType.toStdString() + ' ' + std::to_string(data->size());
    if (error)
        text += "error " + std::to_string(error->code);
    return text;
}

/// \brief A picture's way through the session: resume the task, then wait().
struct Get : Awaited<std::optional<QByteArray>, std::optional<parloquin::UrlResponse>,
                 std::optional<parloquin::TransportError>> {
    explicit Get(const QString &url, qint64 maximumBytes = 1000, const QByteArray &method = "GET")
        : Awaited(shown)
    {
        parloquin::UrlRequest request;
        request.url = QUrl(url);
        request.method = method;
        if (method == "POST") {
            request.headers = { { "Content-Type", "x" } };
            request.body = "x";
        }
        request.timeout = std::chrono::seconds(30);
        task = parloquin::UrlSession::shared().dataTask(request, handler(), maximumBytes);
    }

    std::string outcome()
    {
        task->resume();
        return wait();
    }

    std::shared_ptr<parloquin::UrlSessionTask> task;
};
