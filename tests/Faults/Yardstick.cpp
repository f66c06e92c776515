#include "Faults/Yardstick.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <mutex>
#include <utility>

using namespace std::chrono_literals;

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

/// What Qt has made since the first yardstick, whatever thread it lives in.
std::mutex objectsMutex;
auto &liveObjects = *new QHash<QObject *, int>; // with their number; for as long as any lives
int objectsSoFar = 0;
std::array<int, 2> realOutputs { -1, -1 };
int capture = -1;

/// Also from a signal: plain system calls only.
void release(bool show)
{
    if (capture < 0)
        return;
    for (int i = 0; i < 2; ++i)
        ::dup2(realOutputs[static_cast<size_t>(i)], i + 1);
    char bytes[4096];
    off_t at = 0;
    for (ssize_t count = 0; show && (count = ::pread(capture, bytes, sizeof bytes, at)) > 0;)
        at += ::write(STDERR_FILENO, bytes, static_cast<size_t>(count));
    capture = -1;
}

void onDeath() { release(true); }

int entriesOf(const char *folder)
{
    return static_cast<int>(
        QDir(QLatin1String(folder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size());
}

/// Nanoseconds that the main thread was ready to run and did not.
qint64 waitedForProcessor(int schedstat)
{
    char text[128] = {};
    if (::pread(schedstat, text, sizeof text - 1, 0) <= 0)
        return 0;
    return QByteArray(text).split(' ').value(1).toLongLong();
}

using Resources = std::array<int, 4>;
constexpr std::array<const char *, 4> resourceNames { "descriptors", "threads", "objects",
    "widgets" };

Resources resources()
{
    const std::lock_guard lock(objectsMutex);
    return { entriesOf("/proc/self/fd"), entriesOf("/proc/self/task"),
        static_cast<int>(liveObjects.size()), static_cast<int>(QApplication::allWidgets().size()) };
}

} // namespace

const std::chrono::milliseconds Yardstick::longestHold = 100ms * slowness;

std::chrono::milliseconds Yardstick::slack(std::chrono::milliseconds deadline)
{
    return deadline / 60 + 300ms * slowness;
}

struct Yardstick::Private {
    int schedstat = -1;
    QTimer heartbeat;
    QElapsedTimer sinceBeat;
    qint64 waitedBefore = 0;
    qint64 longest = 0; // ns
    Resources noted {};

    void beat(bool counts = true)
    {
        const qint64 waited = waitedForProcessor(schedstat);
        const qint64 passed = sinceBeat.nsecsElapsed();
        if (counts)
            longest = std::max(longest, passed - (waited - waitedBefore));
        waitedBefore = waited;
        sinceBeat.restart();
    }

    int objectsThen = 0;
};

Yardstick::Yardstick()
    : d(std::make_unique<Private>())
{
    d->schedstat = ::open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
    std::fflush(stdout);
    capture = ::memfd_create("output", MFD_CLOEXEC);
    for (int i = 0; i < 2; ++i) {
        realOutputs[static_cast<size_t>(i)] = ::fcntl(i + 1, F_DUPFD_CLOEXEC, 3);
        ::dup2(capture, i + 1);
    }
    // Both outputs write at the end, whoever wrote before.
    ::fcntl(STDOUT_FILENO, F_SETFL, ::fcntl(STDOUT_FILENO, F_GETFL) | O_APPEND);
    for (const int signal : { SIGABRT, SIGSEGV, SIGBUS })
        std::signal(signal, [](int number) {
            onDeath();
            std::signal(number, SIG_DFL);
            std::raise(number);
        });
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(onDeath);

    constexpr int onAdd = 3;
    constexpr int onRemove = 4;
    qtHookData[onAdd] = reinterpret_cast<quintptr>(+[](QObject *object) {
        const std::lock_guard lock(objectsMutex);
        liveObjects.insert(object, ++objectsSoFar);
    });
    qtHookData[onRemove] = reinterpret_cast<quintptr>(+[](QObject *object) {
        const std::lock_guard lock(objectsMutex);
        liveObjects.remove(object);
    });

    d->heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&d->heartbeat, &QTimer::timeout, &d->heartbeat, [this] { d->beat(); });
    d->waitedBefore = waitedForProcessor(d->schedstat);
    d->sinceBeat.start();
    d->heartbeat.start(10ms);
}

Yardstick::~Yardstick()
{
    std::fflush(stdout);
    const int written = capture;
    release(testing::Test::HasFailure());
    ::close(written);
    for (const int output : realOutputs)
        ::close(output);
    ::close(d->schedstat);
    qtHookData[3] = qtHookData[4] = 0;
}

std::shared_ptr<void> Yardstick::pause() const
{
    d->beat();
    return { d.get(), [](Private *self) { self->beat(false); } };
}

void Yardstick::say(const QByteArray &line) const
{
    const QByteArray text = line + '\n';
    static_cast<void>(::write(realOutputs[0], text.constData(), static_cast<size_t>(text.size())));
}

QByteArray Yardstick::output() const
{
    QByteArray bytes(::lseek(capture, 0, SEEK_END), Qt::Uninitialized);
    bytes.resize(::pread(capture, bytes.data(), static_cast<size_t>(bytes.size()), 0));
    return bytes;
}

void Yardstick::beginAnew()
{
    std::fflush(stdout);
    static_cast<void>(::ftruncate(capture, 0));
    d->longest = 0;
}

qsizetype Yardstick::requests() const
{
    // One that is refused for want of a network is not even signed.
    const QByteArray written = '\n' + output();
    return written.count("\n[HMAC/SIGNATURE Start]\n") + written.count("\nconnection\n");
}

qsizetype Yardstick::completions() const
{
    static const QRegularExpression failures(
        QStringLiteral(
            "^(general|requestObjectCreate|jsonDecode|noSuchFile|timeOutEtc|connection)$"),
        QRegularExpression::MultilineOption);
    const QByteArray written = output();
    // An answer is dumped by the request log and once more by whoever asked.
    return QString::fromUtf8(written).count(failures) + written.count("\n- meta:")
        - written.count("\n✅ Response:\n");
}

void Yardstick::noteResources()
{
    Resources last {};
    int same = 0;
    (void)QTest::qWaitFor([&] {
        const Resources before = std::exchange(last, resources());
        same = last == before ? same + 1 : 0;
        return same == 5;
    });
    d->noted = last;
    d->beat(false);
    d->longest = 0;
    d->objectsThen = objectsSoFar;
}

QString Yardstick::leftOver() const
{
    Resources now {};
    const bool isBack = QTest::qWaitFor(
        [&] {
            now = resources();
            return std::equal(now.begin(), now.end(), d->noted.begin(), std::less_equal());
        },
        2000 * slowness);
    if (isBack)
        return {};
    QStringList found;
    for (size_t i = 0; i < now.size(); ++i)
        found << QStringLiteral("%1 %2, were %3")
                     .arg(now.at(i))
                     .arg(QLatin1String(resourceNames.at(i)))
                     .arg(d->noted.at(i));
    const std::lock_guard lock(objectsMutex);
    for (auto object = liveObjects.cbegin(); object != liveObjects.cend(); ++object) {
        if (object.value() > d->objectsThen)
            found << QLatin1String(object.key()->metaObject()->className());
    }
    return found.join(QStringLiteral("; "));
}

bool Yardstick::wasHeld() const { return std::chrono::nanoseconds(d->longest) > longestHold; }

QStringList Yardstick::findings(const QList<QByteArray> &secrets) const
{
    QStringList found;
    if (wasHeld())
        found << QStringLiteral("the main thread was held %1 ms").arg(d->longest / 1'000'000);
    if (completions() != requests())
        found
            << QStringLiteral("%1 requests had %2 completions").arg(requests()).arg(completions());

    const QByteArray written = output();
    for (const char *fault : { "Sanitizer", "runtime error:", "QObject::", "QSocketNotifier" }) {
        if (written.contains(fault))
            found << QStringLiteral("the output holds ") + QLatin1String(fault);
    }
    static const QRegularExpression fixedLines(
        QStringLiteral("^HMAC: .*?$|^🤜🏻 Request (Header|Params): .*?$"
                       "|^- meta:.*?(?=^[^ -]|\\z)"
                       "|CurrentJSON: .*?(?=^\\[Parloquin\\]$)"),
        QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    const QByteArray rest = QString::fromUtf8(written).remove(fixedLines).toUtf8();
    for (const QByteArray &secret : secrets) {
        if (rest.contains(secret))
            found << QStringLiteral("the output holds ") + QString::fromUtf8(secret);
    }
    return found;
}
