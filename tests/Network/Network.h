// What the cases of this folder share: calls and pictures, and how each comes out.
#pragma once

#include "Parloquin/Networking/Client/Result.h"
#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Networking/Model/Request/CheckRequestModel.h"
#include "Parloquin/Networking/Model/Response/CheckResponseModel.h"
#include "Parloquin/Networking/Model/Response/CountryResponseModel.h"
#include "Parloquin/Networking/Request/Request.h"
#include "Parloquin/Platform/GLibPointers.h"
#include "Parloquin/Transport/UrlSession.h"
#include "support/ByName.h"
#include "support/NameServer.h"
#include "support/OwnNetwork.h"
#include "support/RawServer.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QLocalServer>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>

using namespace parloquin;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// \brief Collects the outcomes of a call, whichever thread brings them, and waits for the first.
template <class... Arguments> class Awaited {
public:
    /// \param show puts an outcome into words
    explicit Awaited(std::function<std::string(std::decay_t<Arguments>...)> show)
        : m_show(std::move(show))
    {
    }

    std::function<void(Arguments...)> handler()
    {
        return [show = m_show, state = m_state](Arguments... outcome) {
            state->text = show(std::move(outcome)...);
            state->thread = std::this_thread::get_id();
            ++state->count; // what is above may be read from now on
        };
    }

    /// \return the last outcome, once there is one
    std::string wait() const
    {
        const bool isOver = QTest::qWaitFor([this] { return count() > 0; }, 20'000);
        return isOver ? m_state->text : "no outcome within 20 s";
    }
    int count() const { return m_state->count; }
    bool onThisThread() const { return m_state->thread == std::this_thread::get_id(); }

private:
    struct State {
        std::string text;
        std::thread::id thread;
        std::atomic<int> count = 0;
    };
    const std::function<std::string(std::decay_t<Arguments>...)> m_show;
    const std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// "success", "refused" by the service, or the failure's name.
template <class T> std::string nameOf(const Result<T> &result)
{
    static constexpr const char *failures[] = { "general", "requestObjectCreate", "jsonDecode",
        "noSuchFile", "timeOutEtc", "connection" };
    if (const ApiError *error = result.error())
        return failures[static_cast<int>(*error)];
    return result.response()->isSuccess() ? "success" : "refused";
}

template <class T> struct AwaitedResult : Awaited<Result<T>> {
    AwaitedResult()
        : Awaited<Result<T>>(nameOf<T>)
    {
    }
};

/// "200 image/png 4" of a whole answer, else "error -1005", with the status where there is one.
inline std::string shown(const std::optional<QByteArray> &data,
    const std::optional<UrlResponse> &response, const std::optional<TransportError> &error)
{
    std::string text = response ? std::to_string(response->statusCode) + ' ' : "";
    if (data && response)
        text += response->mimeType.toStdString() + ' ' + std::to_string(data->size());
    if (error)
        text += "error " + std::to_string(error->code);
    return text;
}

/// \brief A picture's way through the session: resume the task, then wait().
struct Get : Awaited<std::optional<QByteArray>, std::optional<UrlResponse>,
                 std::optional<TransportError>> {
    explicit Get(const QString &url, qint64 maximumBytes = 1000, const QByteArray &method = "GET")
        : Awaited(shown)
    {
        UrlRequest request;
        request.url = QUrl(url);
        request.method = method;
        if (method == "POST") {
            request.headers = { { "Content-Type", "x" } };
            request.body = "x";
        }
        request.timeout = std::chrono::seconds(30);
        task = UrlSession::shared().dataTask(request, handler(), maximumBytes);
    }

    std::string outcome()
    {
        task->resume();
        return wait();
    }

    std::shared_ptr<UrlSessionTask> task;
};
