#include "Parloquin/TestKit/Sandbox.h"

#include "Parloquin/TestKit/Http.h"
#include "Parloquin/TestKit/SandboxPrivate.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <sys/prctl.h>

#include <csignal>

namespace ParloquinTest {

namespace {

constexpr char serviceVariable[] = "PARLOQUIN_SERVICE_HOST";
constexpr char routeVariable[] = "PARLOQUIN_ROUTE";
constexpr char desktopVariable[] = "PARLOQUIN_DESKTOP";

QByteArray jsonOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// The end of one would leave the other's kit without a service, in the middle of a case.
void stopUnlessAlone()
{
    if (qEnvironmentVariableIsSet(desktopVariable))
        qFatal("TestKit: %s is set, by another Sandbox; make one at a time", desktopVariable);
}

} // namespace

QJsonValue Sandbox::Private::ask(const QByteArray &path, const QByteArray &body) const
{
    const HttpAnswer answer = http(host, path, body);
    if (answer.status != 200)
        qFatal("TestKit: the sandbox refused %s (%d): %s", path.constData(), answer.status,
            answer.body.constData());
    return QJsonDocument::fromJson(answer.body).object();
}

Sandbox::Sandbox(const QString &program, const QStringList &arguments)
    : d((stopUnlessAlone(), std::make_unique<Private>()))
{
    d->process.setProcessChannelMode(QProcess::MergedChannels);
    // Gone with this program, also when that crashes.
    d->process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    d->process.start(program,
        QStringList { QStringLiteral("--port"), QStringLiteral("0") } + arguments,
        QIODevice::ReadOnly);
    constexpr int patience = 20000; // ms
    while (!d->process.canReadLine() && d->process.waitForReadyRead(patience)) { }
    // "parloquin-sandbox listens at 127.0.0.1:39651"
    const QString line = QString::fromLocal8Bit(d->process.readLine()).trimmed();
    d->host = line.section(QLatin1Char(' '), -1);
    if (!line.contains(QStringLiteral(" listens at ")))
        qFatal("TestKit: %s does not start: %s", qPrintable(program),
            qPrintable(line.isEmpty() ? d->process.errorString() : line));

    qputenv(serviceVariable, d->host.toLatin1());
    qputenv(desktopVariable, d->desktop.socket().toLocal8Bit());
    goesOffline(false);
}

Sandbox::~Sandbox()
{
    for (const char *variable : { serviceVariable, routeVariable, desktopVariable })
        qunsetenv(variable);
    d->process.kill();
    d->process.waitForFinished();
}

void Sandbox::answers(const QString &call, const QJsonValue &outcome)
{
    (void)d->ask("/sandbox/outcomes", jsonOf({ { call, outcome } }));
}

void Sandbox::delays(const QString &call, std::chrono::milliseconds delay)
{
    answers(call, QJsonObject { { QStringLiteral("delayMs"), static_cast<int>(delay.count()) } });
}

void Sandbox::goesOffline(bool isOffline)
{
    // In words both ways: a machine for tests may have no route itself.
    qputenv(routeVariable, isOffline ? "none" : "default");
}

void Sandbox::hasApps(const QStringList &schemes)
{
    QSet<QByteArray> apps;
    for (const QString &scheme : schemes)
        apps.insert(scheme.toLatin1());
    d->desktop.setApps(apps);
}

QString Sandbox::lastCode() const
{
    const HttpAnswer answer = http(d->host, "/sandbox/codes/last");
    return QJsonDocument::fromJson(answer.body)[QStringLiteral("code")].toString();
}

QJsonArray Sandbox::sessions() const
{
    return d->ask("/sandbox/sessions")[QStringLiteral("sessions")].toArray();
}

bool Sandbox::confirms(const QString &sessionId) const
{
    const HttpAnswer answer =
        http(d->host, "/sandbox/sessions/" + sessionId.toUtf8().toPercentEncoding());
    return QJsonDocument::fromJson(answer.body)[QStringLiteral("confirmed")].toBool();
}

int Sandbox::requests(const QString &call) const
{
    return d->ask("/sandbox/requests")[call][QStringLiteral("posts")].toInt();
}

QJsonArray Sandbox::journal() const
{
    return d->ask("/sandbox/journal?limit=10000")[QStringLiteral("exchanges")].toArray();
}

QString Sandbox::report() const
{
    QString lines;
    for (const QJsonValue &each : journal()) {
        lines += QStringLiteral("  %1 %2 %3 %4\n")
                     .arg(each[QStringLiteral("call")].toString(),
                         each[QStringLiteral("verdict")].toString(),
                         QString::number(each[QStringLiteral("status")].toInt()),
                         each[QStringLiteral("reason")].toString());
    }
    return lines.isEmpty() ? QStringLiteral("  nothing\n") : lines;
}

void Sandbox::reset()
{
    (void)d->ask("/sandbox/reset", "{}");
    (void)d->desktop.takeOpened();
    d->desktop.setApps(std::nullopt);
    goesOffline(false);
}

QString Sandbox::host() const { return d->host; }

} // namespace ParloquinTest
