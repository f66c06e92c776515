// The demo's own play where one thing after the other goes wrong: each of its checks has failed in
// one of plays/*.txt, whose first line says what is so, and whose others what the play says of it.
// clang-format off
//   "outcomes", "apps", ...  as in a scenario; "service": where it is looked for
//   "window": "behind"       others; "messenger": false, none opens; "modem": true, the code comes by SMS
//   "after": once this was said ("times"), the play has little patience and
//   "then": "hide", "move" away or "disable" the "part", "end" of the sandbox; or, patient still, "close"
//           the window, "remove" the pictures' folder, "accept" or "lose" what is checked, "repeat" the session
// clang-format on
#include "AutoPlayer.h"
#include "DemoWindow.h"
#include "support/Hands.h"
#include "support/ModemBus.h"
#include "support/Steps.h"

#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryFile>
#include <QtCore/QTimer>
#include <QtCore/QUrlQuery>
#include <QtWidgets/QAbstractButton>

#include <Parloquin/TestKit/Desktop.h>
#include <Parloquin/TestKit/Http.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class DemoPlayer : public testing::TestWithParam<std::string> {
protected:
    void begin(QJsonObject around)
    {
        m_around = around;
        for (const auto &own : { u"window"_s, u"messenger"_s, u"modem"_s, u"service"_s, u"after"_s,
                 u"times"_s, u"then"_s, u"part"_s })
            around.remove(own);
        around[u"keys"_s] = QJsonObject { { u"client"_s, u"parloquin-demo"_s },
            { u"secret"_s,
                u"8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"_s } };
        around[u"codes"_s] = QJsonObject { { u"fixed"_s, u"123"_s } };
        QTemporaryFile scenario;
        ASSERT_TRUE(scenario.open());
        scenario.write(QJsonDocument(around).toJson());
        ASSERT_TRUE(scenario.flush());
        m_sandbox.emplace(QStringLiteral(PARLOQUIN_SANDBOX_PROGRAM),
            QStringList { u"--scenario"_s, scenario.fileName() });
        qputenv("PARLOQUIN_DESKTOP", m_desktop.socket().toLocal8Bit());
        if (m_around.contains(u"service"_s))
            qputenv("PARLOQUIN_SERVICE_HOST", m_around[u"service"_s].toString().toLatin1());
        if (m_around[u"modem"_s].toBool())
            m_bus.emplace().play("start bus;start service;modem 0 20601");
    }
    /// \return what was said of it, and how it ended
    QString play()
    {
        ParloquinTest::switchMotionOff();
        demo::DemoWindow window;
        if (m_around[u"window"_s] == u"behind"_s)
            window.setWindowFlags(Qt::ToolTip); // which nothing brings to the front
        demo::AutoPlayer player(window, m_folder.path(), 0ms);
        const QString after = m_around[u"after"_s].toString();
        m_isAfter = after.isEmpty(); // and so from the start
        if (m_isAfter)
            then(window, player);
        QTimer others;
        others.callOnTimeout(&window, [&] {
            if (!m_isAfter && said().count(after) >= m_around[u"times"_s].toInt(1)) {
                m_isAfter = true;
                then(window, player);
            }
            sendMessage(window);
            if (m_bus && said().contains(u"was refused"_s) && visible(window, "txtCode0")
                && !visible(window, "btnMessageCode"))
                m_bus->tell({ u"sms"_s, u"0"_s, QString::number(++m_messages), u"3"_s,
                    u"Code\\n@127.0.0.1 #123"_s });
        });
        others.start(10);
        window.show();
        EXPECT_TRUE(m_console.open());
        const int before = ::dup(STDERR_FILENO);
        ::dup2(m_console.handle(), STDERR_FILENO);
        const bool isPlayed = player.play();
        ::dup2(before, STDERR_FILENO);
        ::close(before);
        EXPECT_EQ(QFile::exists(m_folder.filePath(u"failed-here.png"_s)),
            !isPlayed && QFile::exists(m_folder.path()));
        return said() + (isPlayed ? u"Played.\n"_s : u"Failed.\n"_s);
    }

private:
    static bool visible(const QWidget &window, const char *name)
    {
        const auto *const part = window.findChild<QWidget *>(QLatin1String(name));
        return part && part->isVisible();
    }
    [[nodiscard]] QString said() const
    {
        QFile file(m_console.fileName());
        (void)file.open(QIODevice::ReadOnly);
        return QString::fromUtf8(file.readAll())
            .replace(m_folder.path(), u"FOLDER"_s)
            .replace(m_sandbox ? m_sandbox->host() : u"?"_s, u"HOST"_s);
    }
    [[nodiscard]] QString lastSession() const
    {
        return m_sandbox->sessions().at(0)[u"sessionId"_s].toString();
    }
    void then(demo::DemoWindow &window, demo::AutoPlayer &player)
    {
        const QString what = m_around[u"then"_s].toString();
        if (what == u"close"_s) {
            window.close();
        } else if (what == u"remove"_s) {
            m_folder.remove();
        } else if (what == u"accept"_s || what == u"lose"_s) {
            auto *const check = window.findChild<QAbstractButton *>(u"btnCheck"_s);
            auto *const heard = window.findChild<ParloquinSignals *>();
            check->disconnect();
            QObject::connect(check, &QAbstractButton::clicked, heard, [=, this] {
                what == u"accept"_s ? Q_EMIT heard->succeeded(lastSession())
                                    : Q_EMIT heard->failed(ParloquinSignals::ServerError);
            });
        } else if (what == u"repeat"_s) {
            m_sandbox->answers(u"check-otp"_s,
                QJsonObject {
                    { u"fault"_s, u"json:result.sessionId=\"%1\""_s.arg(lastSession()) } });
        } else {
            player.setPatience(1s);
            QTimer::singleShot(20s, &window, &QWidget::close); // if it waits all the same
        }
        if (what == u"end"_s)
            m_sandbox.reset();
        for (auto *part : window.findChildren<QWidget *>(m_around[u"part"_s].toString(u"none"_s)))
            what == u"hide"_s       ? part->hide()
                : what == u"move"_s ? part->move(2000, 0)
                                    : part->setEnabled(false);
    }
    /// As the messenger does, and the person in front of it.
    void sendMessage(const demo::DemoWindow &window)
    {
        if (m_link.isEmpty() && m_around[u"messenger"_s].toBool(true))
            m_link = m_desktop.takeOpened();
        if (m_link.isEmpty() || !window.isAtRest())
            return;
        const QUrlQuery query { QUrl(QString::fromUtf8(std::exchange(m_link, {}))) };
        QJsonObject message;
        for (const auto &key : { u"app"_s, u"text"_s })
            message[key] = query.queryItemValue(key, QUrl::FullyDecoded);
        QCoreApplication::sendPostedEvents(); // the reference of the start is kept behind the link
        Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
        (void)ParloquinTest::http(
            m_sandbox->host(), "/sandbox/messages", QJsonDocument(message).toJson());
        Q_EMIT qApp->applicationStateChanged(Qt::ApplicationActive);
    }

    QTemporaryDir m_folder;
    QTemporaryFile m_console;
    QJsonObject m_around;
    bool m_isAfter = false;
    int m_messages = 0;
    ParloquinTest::Desktop m_desktop;
    QByteArray m_link;
    std::optional<ParloquinTest::Sandbox> m_sandbox;
    std::optional<ModemBus> m_bus;
};

TEST_P(DemoPlayer, SaysWhatFails)
{
    const std::string file = PLAYS "/" + GetParam() + ".txt";
    transcript::Steps steps = transcript::read(file);
    ASSERT_EQ(steps.size(), 1U);
    begin(QJsonDocument::fromJson(QByteArray::fromStdString(steps[0].head).mid(2)).object());
    steps[0].text = play().replace(QRegularExpression(u"[0-9a-f-]{36}"_s), u"(id)"_s).toStdString();
    transcript::takeIfMeant(steps, file);
    transcript::expectApproved(steps, file);
}

std::vector<std::string> plays()
{
    std::vector<std::string> names;
    for (const QFileInfo &file : QDir(QStringLiteral(PLAYS)).entryInfoList({ u"*.txt"_s }))
        names.push_back(file.baseName().toStdString());
    return names;
}
INSTANTIATE_TEST_SUITE_P(
    , DemoPlayer, testing::ValuesIn(plays()), [](const auto &row) { return row.param; });

} // namespace
