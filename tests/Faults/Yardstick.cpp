#include "Faults/Yardstick.h"

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <mutex>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

// What Qt calls for each object that comes and goes; meant for debuggers, its form is stable.
extern Q_CORE_EXPORT quintptr qtHookData[]; // NOLINT
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak)); // NOLINT

namespace {

#if defined(__SANITIZE_THREAD__)
constexpr int slowness = 10;
#elif defined(__SANITIZE_ADDRESS__)
constexpr int slowness = 4;
#else
constexpr int slowness = 1;
#endif
/// The time that the main thread was ready to run but had no processor is not counted.
constexpr std::chrono::nanoseconds longestHold = 100ms * slowness;

/// What Qt has made since the first yardstick, whatever thread it lives in.
std::mutex objectsMutex;
auto &liveObjects = *new QHash<QObject *, int>; // with their number; for as long as any lives
int objectsSoFar = 0;
int realOutputs[] { -1, -1 };
int capture = -1;

/// Also from a signal: plain system calls only.
void release(bool show)
{
    if (capture < 0)
        return;
    for (int i = 0; i < 2; ++i)
        ::dup2(realOutputs[i], i + 1);
    char bytes[4096];
    off_t at = 0;
    for (ssize_t count = 0; show && (count = ::pread(capture, bytes, sizeof bytes, at)) > 0;)
        at += ::write(STDERR_FILENO, bytes, static_cast<size_t>(count));
    capture = -1;
}

/// Nanoseconds that the main thread was ready to run and did not.
qint64 waitedForProcessor(int schedstat)
{
    char text[128] = {};
    if (::pread(schedstat, text, sizeof text - 1, 0) <= 0)
        return 0;
    return QByteArray(text).split(' ').value(1).toLongLong();
}

int entriesOf(const char *folder)
{
    using Entries = std::filesystem::directory_iterator;
    return static_cast<int>(std::distance(Entries(folder), Entries()));
}

constexpr const char *resourceNames[] { "descriptors", "threads", "objects", "widgets" };

std::array<int, 4> resources()
{
    const std::lock_guard lock(objectsMutex);
    return { entriesOf("/proc/self/fd"), entriesOf("/proc/self/task"),
        static_cast<int>(liveObjects.size()), static_cast<int>(QApplication::allWidgets().size()) };
}

} // namespace

std::chrono::milliseconds Yardstick::slack(std::chrono::milliseconds deadline)
{
    return deadline / 60 + 300ms * slowness;
}

Yardstick::Yardstick()
    : m_schedstat(::open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC))
{
    std::fflush(stdout);
    capture = ::memfd_create("output", MFD_CLOEXEC);
    for (int i = 0; i < 2; ++i) {
        realOutputs[i] = ::fcntl(i + 1, F_DUPFD_CLOEXEC, 3);
        ::dup2(capture, i + 1);
    }
    // Both outputs write at the end, whoever wrote before.
    ::fcntl(STDOUT_FILENO, F_SETFL, ::fcntl(STDOUT_FILENO, F_GETFL) | O_APPEND);
    for (const int signal : { SIGABRT, SIGSEGV, SIGBUS })
        std::signal(signal, [](int number) {
            release(true);
            std::signal(number, SIG_DFL);
            std::raise(number);
        });
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback([] { release(true); });

    qtHookData[3] = reinterpret_cast<quintptr>(+[](QObject *added) {
        const std::lock_guard lock(objectsMutex);
        liveObjects.insert(added, ++objectsSoFar);
    });
    qtHookData[4] = reinterpret_cast<quintptr>(+[](QObject *removed) {
        const std::lock_guard lock(objectsMutex);
        liveObjects.remove(removed);
    });

    m_heartbeat.setTimerType(Qt::PreciseTimer);
    m_heartbeat.callOnTimeout(&m_heartbeat, [this] { beat(); });
    m_sinceBeat.start();
    beat(false);
    m_heartbeat.start(10ms);
}

Yardstick::~Yardstick()
{
    std::fflush(stdout);
    const int written = capture;
    release(testing::Test::HasFailure());
    for (const int descriptor : { written, realOutputs[0], realOutputs[1], m_schedstat })
        ::close(descriptor);
    qtHookData[3] = qtHookData[4] = 0;
}

void Yardstick::beat(bool counts)
{
    const qint64 waited = waitedForProcessor(m_schedstat);
    const qint64 passed = m_sinceBeat.nsecsElapsed();
    if (counts)
        m_longestHold = std::max(m_longestHold, passed - (waited - m_waitedBefore));
    m_waitedBefore = waited;
    m_sinceBeat.restart();
}

std::shared_ptr<void> Yardstick::pause()
{
    beat();
    return { this, [](Yardstick *self) { self->beat(false); } };
}

QByteArray Yardstick::output()
{
    QByteArray bytes(::lseek(capture, 0, SEEK_END), Qt::Uninitialized);
    bytes.resize(::pread(capture, bytes.data(), static_cast<size_t>(bytes.size()), 0));
    return bytes;
}

qsizetype Yardstick::requests()
{
    // One that is refused for want of a network is not even signed.
    const QByteArray written = '\n' + output();
    return written.count("\n[HMAC/SIGNATURE Start]\n") + written.count("\nconnection\n");
}

qsizetype Yardstick::completions()
{
    static const QRegularExpression failures(
        u"^(general|requestObjectCreate|jsonDecode|noSuchFile|timeOutEtc|connection)$"_s,
        QRegularExpression::MultilineOption);
    const QByteArray written = output();
    // An answer is dumped by the request log and once more by whoever asked.
    return QString::fromUtf8(written).count(failures) + written.count("\n- meta:")
        - written.count("\n✅ Response:\n");
}

void Yardstick::beginAnew()
{
    std::fflush(stdout);
    static_cast<void>(::ftruncate(capture, 0));
    m_longestHold = 0;
}

void Yardstick::noteResources()
{
    int same = 0;
    (void)QTest::qWaitFor([&] {
        const auto before = std::exchange(m_noted, resources());
        same = m_noted == before ? same + 1 : 0;
        return same == 5;
    });
    beat(false);
    m_longestHold = 0;
    m_objectsThen = objectsSoFar;
}

QString Yardstick::leftOver() const
{
    auto now = resources();
    const bool isBack = QTest::qWaitFor(
        [&] {
            now = resources();
            return std::equal(now.begin(), now.end(), m_noted.begin(), std::less_equal());
        },
        2000 * slowness);
    if (isBack)
        return {};
    QStringList found;
    for (size_t i = 0; i < now.size(); ++i)
        found << u"%1 %2, were %3"_s.arg(
            QString::number(now[i]), QLatin1String(resourceNames[i]), QString::number(m_noted[i]));
    const std::lock_guard lock(objectsMutex);
    for (const auto &[object, number] : liveObjects.asKeyValueRange()) {
        if (number > m_objectsThen)
            found << QLatin1String(object->metaObject()->className());
    }
    return found.join(u"; "_s);
}

bool Yardstick::wasHeld() const { return std::chrono::nanoseconds(m_longestHold) > longestHold; }

QStringList Yardstick::findings(const QList<QByteArray> &secrets) const
{
    QStringList found;
    if (wasHeld())
        found << u"the main thread was held %1 ms"_s.arg(m_longestHold / 1'000'000);
    if (completions() != requests())
        found << u"%1 requests had %2 completions"_s.arg(requests()).arg(completions());

    const QByteArray written = output();
    static const QRegularExpression fixedLines(
        u"^HMAC: .*?$|^🤜🏻 Request (Header|Params): .*?$"
        "|^- meta:.*?(?=^[^ -]|\\z)"
        "|CurrentJSON: .*?(?=^\\[Parloquin\\]$)"_s,
        QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    const QByteArray rest = QString::fromUtf8(written).remove(fixedLines).toUtf8();
    const auto find = [&found](const QByteArray &text, const QList<QByteArray> &parts) {
        for (const QByteArray &part : parts) {
            if (text.contains(part))
                found << u"the output holds "_s + QString::fromUtf8(part);
        }
    };
    find(written, { "Sanitizer", "runtime error:", "QObject::", "QSocketNotifier" });
    find(rest, secrets);
    return found;
}
