#include "Screens/Container.h"

#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Transport/UrlSession.h"
#include "support/ServiceEndpoint.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void write(const QString &path, const QByteArray &text, bool isProgram = false)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(path));
    if (isProgram)
        file.setPermissions(file.permissions() | QFile::ExeOwner);
}

/// A desktop of the test's own. Made before main(), since libraries read its place only once.
const QTemporaryDir &desktop()
{
    static const QTemporaryDir folder;
    static const bool made = [] {
        QDir(folder.path()).mkdir(u"applications"_s);
        const QByteArray arguments = folder.filePath(u"arguments"_s).toUtf8();
        const QString program = folder.filePath(u"messenger"_s);
        write(program,
            "#!/bin/sh\nprintf '%s\\n' \"$*\" >> '" + arguments
                + ".starts'\nprintf '%s\\0' \"$@\" > '" + arguments + ".new'\nmv '" + arguments
                + ".new' '" + arguments + "'\n",
            true);
        QByteArray defaults = "[Default Applications]\n";
        const auto install = [&defaults](const QByteArray &scheme, const QByteArray &command) {
            const QString entry = u"applications/%1.desktop"_s;
            write(folder.filePath(entry.arg(QString::fromLatin1(scheme))),
                "[Desktop Entry]\nType=Application\nName=" + scheme + "\nExec=" + command
                    + "\nMimeType=x-scheme-handler/" + scheme + ";\n");
            defaults += "x-scheme-handler/" + scheme + '=' + scheme + ".desktop\n";
        };
        install("parlo", program.toUtf8() + " %u");
        install("several", program.toUtf8() + " %U");
        install("options", program.toUtf8() + " --link %u end");
        install("file", program.toUtf8() + " %u");
        install("deaf", program.toUtf8());
        install("gone", "/nonexistent/messenger %u");
        install("exits", "false %u");
        write(folder.filePath(u"applications/mimeapps.list"_s), defaults);
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
        qputenv("XDG_DATA_DIRS", folder.path().toUtf8());
        qputenv("XDG_CONFIG_DIRS", folder.path().toUtf8());
        return true;
    }();
    Q_UNUSED(made)
    return folder;
}

[[maybe_unused]] const QTemporaryDir &madeFirst = desktop();

bool hasDefaultRoute()
{
    QFile routes(u"/proc/net/route"_s);
    return routes.open(QIODevice::ReadOnly) && routes.readAll().contains("\t00000000\t");
}

/// The first look at the routes opens or closes the gate a moment after the start, once in a
/// process: it is over before the test begins. Loopback is all we need.
void openGate()
{
    auto &gate = parloquin::ApiSessionHelper::shared().isNetworkReachable;
    [[maybe_unused]] static const bool looked = [&gate] {
        const bool isOnline = hasDefaultRoute();
        gate = !isOnline;
        return QTest::qWaitFor([&] { return gate == isOnline; });
    }();
    gate = true;
}

} // namespace

void RecordingDelegate::verificationDidSucceed(const QString &sessionId)
{
    record(u"succeeded "_s + sessionId);
}

void RecordingDelegate::verificationDidFail(ParloquinError error)
{
    record(u"failed %1"_s.arg(static_cast<int>(error)));
}

void RecordingDelegate::record(const QString &outcome)
{
    {
        const QMutexLocker lock(&m_mutex);
        m_outcomes.append(outcome);
    }
    if (whenTold)
        whenTold();
}

QStringList RecordingDelegate::outcomes() const
{
    const QMutexLocker lock(&m_mutex);
    return m_outcomes;
}

void ContainerTest::SetUp()
{
    forgetHandlerArguments();
    (void)takeHandlerStarts(); // of the case before
    setServiceHost(server.hostAndPort());
    openGate();
}

void ContainerTest::present(QWidget *page)
{
    Parloquin kit;
    container.reset(kit.viewControllerForLogin());
    if (page)
        container->setParent(page);
    container->setContentsMargins(0, 44, 0, 0);
    container->setKitDelegate(delegate);
    container->resize(390, 844);
    container->show();
}

void ContainerTest::presentLoaded()
{
    present();
    ASSERT_TRUE(settle(1));
}

QRect ContainerTest::frame(const QWidget *widget) const
{
    return { widget->mapTo(container.get(), QPoint()), widget->size() };
}

QWidget *ContainerTest::visible(const char *name) const
{
    const auto all = container->findChildren<QWidget *>(QLatin1String(name));
    const auto found = std::ranges::find_if(all, &QWidget::isVisible);
    return found == all.end() ? nullptr : *found;
}

bool ContainerTest::rests() const
{
    return QTest::qWaitFor([this] { return isAtRest(); });
}

testing::AssertionResult ContainerTest::seen(const char *name) const
{
    const bool isSeen = QTest::qWaitFor([&] { return visible(name) && isAtRest(); });
    return testing::AssertionResult(isSeen) << name << (visible(name) ? " moves" : " is not shown");
}

parloquin::TableCell *ContainerTest::row(const char *table, int section, int at) const
{
    parloquin::TableCell *cell = nullptr;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto *rows = qobject_cast<parloquin::TableView *>(visible(table));
        return rows && (cell = rows->cellForRow({ section, at }));
    })) << section
        << '/' << at << " of " << table;
    return cell;
}

bool ContainerTest::overlayIsUp() const
{
    const auto *veil = find("container");
    return veil && veil->isVisible();
}

bool ContainerTest::waitForOverlay(bool up) const
{
    return QTest::qWaitFor([this, up] { return overlayIsUp() == up; });
}

testing::AssertionResult ContainerTest::settle(size_t requests) const
{
    (void)QTest::qWaitFor([&] { return server.requests().size() >= requests; });
    const auto result = server.waitForRequests(requests);
    if (!result)
        return result;
    QCoreApplication::sendPostedEvents(); // the request may be there before its overlay is
    return testing::AssertionResult(waitForOverlay(false) && drainSession())
        << (overlayIsUp() ? "the overlay stays" : "answers are still to come");
}

bool ContainerTest::drainSession()
{
    const auto isThrough = std::make_shared<bool>(false);
    parloquin::UrlRequest unsupported;
    unsupported.url = QUrl(u"none:"_s);
    unsupported.timeout = std::chrono::seconds(5);
    parloquin::UrlSession::shared()
        .dataTask(std::move(unsupported),
            [isThrough](
                auto, auto, auto) { parloquin::onMain([isThrough] { *isThrough = true; }); })
        ->resume();
    return QTest::qWaitFor([&] { return *isThrough; });
}

testing::AssertionResult ContainerTest::waitForOutcomes(int count) const
{
    const auto told = [this] { return delegate->outcomes(); };
    return testing::AssertionResult(QTest::qWaitFor([&] { return told().size() >= count; }))
        << "told: " << told().join(u", "_s).toStdString();
}

void ContainerTest::openPicker() const
{
    tap("viewCountryBack");
    ASSERT_TRUE(seen("tblCountries"));
}

void ContainerTest::choose(const QString &title) const
{
    const QWidget *row = nullptr;
    const auto isThere = [&] {
        const auto *table = qobject_cast<parloquin::TableView *>(visible("tblCountries"));
        for (const auto *cell : table->visibleCells())
            row = titleOf(cell) == title ? cell : row;
        return row != nullptr;
    };
    ASSERT_TRUE(QTest::qWaitFor(isThere)) << title.toStdString();
    tap(row);
    ASSERT_TRUE(seen("btnContinue"));
}

void ContainerTest::pick(const QString &title) const
{
    openPicker();
    choose(title);
}

void ContainerTest::enterNumber(const QString &number) const
{
    tap("txtPhoneNumber");
    type(number);
}

void ContainerTest::goToCode(QWidget *other) const
{
    pick(u"Norway"_s);
    enterNumber(u"41234567"_s);
    hands::key(Qt::Key_Return);
    if (other)
        other->setFocus();
    ASSERT_TRUE(seen("btnCheck"));
    const auto begins = [this] { return visible("txtCode0")->hasFocus(); };
    ASSERT_EQ(QTest::qWaitFor(begins, other ? 500 : 5000), !other) << "code entry's keyboard";
}

void ContainerTest::comeBack()
{
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
    Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
}

QList<QByteArray> ContainerTest::paths() const
{
    QList<QByteArray> paths;
    for (const RawRequest &request : server.requests())
        paths.append(request.path());
    return paths;
}

void ContainerTest::answer(const char *path, const QByteArray &json)
{
    server.answer(path, RawServer::http(200, json));
}

void ContainerTest::answerBothRoads()
{
    answer("/v1.0/init", threeApps);
    answer("/v1.0/start", R"({"result":{"deeplink":"parlo://send","reference":"R-1"}})");
    answer("/v1.0/check", R"({"meta":{"httpStatusCode":200},"result":{"sessionId":"S-1"}})");
    answer("/v1.0/country", R"({"result":{"list":[
        {"title":"Chad","countryCode":"TD","phoneCode":"+235"},
        {"title":"Norway","countryCode":"NO","phoneCode":"+47"}]}})");
    answer("/v1.0/send-otp", R"({"result":{"reference":"R-2"}})");
    answer("/v1.0/check-otp", R"({"result":{"sessionId":"S-2"}})");
}

QStringList ContainerTest::handlerArguments()
{
    QFile file(desktop().filePath(u"arguments"_s));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList arguments = QString::fromUtf8(file.readAll()).split(QChar(u'\0'));
    arguments.removeLast(); // behind the last one's end
    return arguments;
}

void ContainerTest::forgetHandlerArguments() { QFile::remove(desktop().filePath(u"arguments"_s)); }

int ContainerTest::takeHandlerStarts()
{
    QFile file(desktop().filePath(u"arguments.starts"_s));
    const bool isStarted = file.open(QIODevice::ReadOnly);
    const auto starts = (isStarted ? file.readAll() : QByteArray()).split('\n');
    file.remove();
    return static_cast<int>(starts.size() - 1);
}
