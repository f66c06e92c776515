#include "Parloquin/Platform/LinkHandlers.h"

#include "Parloquin/Platform/GLibPointers.h"
#include "Parloquin/Platform/Linux/LinkPortal.h"
#include "Parloquin/Platform/SerialQueue.h"

#include <QtCore/QCoreApplication>

#include <utility>

namespace parloquin::LinkHandlers {

namespace {

using AppInfo = GLibPointer<GAppInfo>;

using Report = std::function<void(const QString &fault)>;

AppInfo handler(const QString &scheme)
{
    AppInfo app(g_app_info_get_default_for_uri_scheme(scheme.toUtf8().constData()));
    // An app that takes no links would be started without this one.
    if (app && !g_app_info_supports_uris(app.get()))
        return {};
    return app;
}

struct Launch {
    AppInfo app; // none where the desktop's portal is to open the link
    QString scheme;
    QByteArray link;
    Report report;
    GLibPointer<GCancellable> cancelled { g_cancellable_new() };
    bool isOver = false;
};

/// \brief Launches apps on a thread of its own, since the desktop's library connects to the
/// session's bus first, and knows no time limit for it.
class Launcher {
public:
    static Launcher &shared()
    {
        static Launcher instance;
        return instance;
    }
    Launcher() = default;
    // exit() takes the statics down beneath a running application object.
    ~Launcher() { end(); }
    Q_DISABLE_COPY_MOVE(Launcher)

    void launch(AppInfo app, const QUrl &url, Report report)
    {
        if (!m_queue) {
            m_queue = std::make_unique<SerialQueue>(QStringLiteral("opener"));
            qAddPostRoutine([] { shared().end(); });
        }
        m_last = std::make_shared<Launch>();
        m_last->app = std::move(app);
        m_last->scheme = url.scheme();
        m_last->link = url.toEncoded();
        m_last->report = std::move(report);
        m_queue->async([launch = m_last] { launch->app ? run(*launch) : askPortal(launch); });
    }

private:
    static void run(Launch &launch)
    {
        constexpr guint patience = 1500; // ms; without the bus the app starts all the same
        GMainContext *const context = g_main_context_get_thread_default();
        const GLibPointer<GSource> late(g_timeout_source_new(patience));
        g_source_set_callback(
            late.get(),
            [](gpointer data) -> gboolean {
                g_cancellable_cancel(static_cast<GCancellable *>(data));
                return G_SOURCE_REMOVE;
            },
            launch.cancelled.get(), nullptr);
        g_source_attach(late.get(), context);

        // The desktop's library quotes the link into the handler's command line itself: it arrives
        // as one argument. It cannot pass for an option, since a scheme begins with a letter.
        GList links { launch.link.data(), nullptr, nullptr };
        g_app_info_launch_uris_async(
            launch.app.get(), &links, nullptr, launch.cancelled.get(),
            [](GObject *, GAsyncResult *result, gpointer data) {
                finish(*static_cast<Launch *>(data), result);
            },
            &launch);
        while (!launch.isOver)
            g_main_context_iteration(context, TRUE); // the next launch waits for this one
    }

    static void finish(Launch &launch, GAsyncResult *result)
    {
        launch.isOver = true;
        GError *failure = nullptr;
        const gboolean isOpened = g_app_info_launch_uris_finish(launch.app.get(), result, &failure);
        tell(launch, isOpened != FALSE, failure);
    }

    /// Nobody waits for the answer: a person may be choosing the app meanwhile.
    static void askPortal(const std::shared_ptr<Launch> &launch)
    {
        g_app_info_launch_default_for_uri_async(
            launch->link.constData(), nullptr, launch->cancelled.get(),
            [](GObject *, GAsyncResult *result, gpointer data) {
                const std::unique_ptr<std::shared_ptr<Launch>> asked(
                    static_cast<std::shared_ptr<Launch> *>(data));
                GError *failure = nullptr;
                const gboolean isOpened =
                    g_app_info_launch_default_for_uri_finish(result, &failure);
                tell(**asked, isOpened != FALSE, failure);
            },
            std::make_unique<std::shared_ptr<Launch>>(launch).release());
    }

    static void tell(const Launch &launch, bool isOpened, GError *failure)
    {
        const GLibPointer<GError> error(failure);
        // Our own impatience with the bus is told like a failure.
        if (isOpened || g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE)
            return;
        launch.report(
            QStringLiteral("Cannot open the app for %1: links: %2")
                .arg(launch.scheme,
                    error ? QString::fromUtf8(error->message) : QStringLiteral("no reason given")));
    }

    // Before the application object goes; ends every wait.
    void end()
    {
        if (m_last)
            g_cancellable_cancel(m_last->cancelled.get());
        m_queue.reset();
        m_last.reset();
    }

    std::unique_ptr<SerialQueue> m_queue;
    std::shared_ptr<Launch> m_last;
};

} // namespace

bool handles(const QString &scheme)
{
    return handler(scheme) || (LinkPortal::isNeeded() && LinkPortal::handles(scheme));
}

bool launch(const QUrl &link, Report report)
{
    AppInfo app = handler(link.scheme());
    if (!app && !LinkPortal::isNeeded())
        return false;
    Launcher::shared().launch(std::move(app), link, std::move(report));
    return true;
}

} // namespace parloquin::LinkHandlers
