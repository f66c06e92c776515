#include "sandbox/messenger/DeepLink.h"
#include "sandbox/messenger/MessengerWindow.h"
#include "sandbox/messenger/TapButton.h"
#include "support/ByName.h"
#include "support/Hands.h"
#include "support/RawServer.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QAccessible>
#include <QtWidgets/QLabel>

#include <gtest/gtest.h>

using namespace messenger;
using namespace Qt::StringLiterals;

namespace {

class Window : public testing::Test {
protected:
    void open(const QString &text = u"Code AB2C-3D4E"_s)
    {
        const DeepLink link { u"parlo"_s, u"Verification service"_s, text };
        window = std::make_unique<MessengerWindow>(link, server.hostAndPort());
        window->resize(390, 844);
        ASSERT_TRUE(comesToFront(*window));
    }
    /// What the service makes of the next messages; nothing: it hangs up, or it is silent.
    void answer(int status, const QByteArray &body = "{}")
    {
        server.play(status >= 0 ? RawServer::Script()
                                : RawServer::Script { RawServer::read(), RawServer::hold() });
        server.answer(
            "/sandbox/messages", status == 0 ? QByteArray() : RawServer::http(status, body));
    }
    [[nodiscard]] QString shown(const char *name) const
    {
        const auto *label = window->findChild<QLabel *>(QLatin1String(name));
        const auto *read = QAccessible::queryAccessibleInterface(const_cast<QLabel *>(label));
        return label->isVisible() ? read->text(QAccessible::Name) : QString();
    }
    [[nodiscard]] bool isSent() const
    {
        return QTest::qWaitFor([this] { return shown("lblState") == u"Sent \u2713"; });
    }

    RawServer server;
    std::unique_ptr<MessengerWindow> window;
};

struct Refusal {
    const char *name;
    int status;
    QByteArray body;
    const char *complaint;
};

const Refusal refusals[] = {
    { "Unknown", 404, R"({"error":"no verification waits for this message"})",
        "Not taken: no verification waits for this message." },
    { "WithoutAReason", 500, "oops", "Not taken: status 500." },
    { "LongWord", 404, R"({"error":"wwwwwwwwwwwwwwwwwwwwwwwwwwwwww"})",
        "Not taken: wwwwwwwwwwwwwwwwwwwwwwwwwwwwww." },
    { "TakenByAnother", 200, "{}", "Not taken: status 200." },
    { "NoAnswer", 0, {}, "does not answer" },
    { "Silence", -1, {}, "does not answer" },
};

class RefusedMessage : public Window, public testing::WithParamInterface<Refusal> { };

TEST_P(RefusedMessage, IsSaidAndCanBeSentAgain)
{
    open();
    for (const Refusal &now : { GetParam(), refusals[1] }) {
        answer(now.status, now.body);
        hands::click(window->btnSend);
        EXPECT_FALSE(window->btnSend->isEnabled()) << "one tap, one message";
        EXPECT_FALSE(window->btnClose->hasFocus()) << "it rings, as after a Tab";
        EXPECT_EQ(shown("lblState"), u"Sending");
        ASSERT_TRUE(QTest::qWaitFor([this] { return !shown("lblError").isEmpty(); }, 15000))
            << now.name;
        EXPECT_TRUE(shown("lblError").contains(QLatin1String(now.complaint)))
            << shown("lblError").toStdString();
        EXPECT_TRUE(window->btnSend->hasFocus());
    }
    answer(202);
    hands::hold(GetParam().status == 0 ? Qt::Key_Enter : Qt::Key_Return); // once, however long
    ASSERT_TRUE(isSent());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isVisible(); })) << "it closes by itself";
    // Qt sends again by itself what a connection dropped; the service takes a message once.
    EXPECT_TRUE(server.requests().size() == 3 || GetParam().status == 0)
        << server.requests().size() << " requests";
    for (const RawRequest &request : server.requests())
        EXPECT_EQ(QJsonDocument::fromJson(request.body).object(),
            (QJsonObject { { u"app"_s, u"parlo"_s }, { u"text"_s, u"Code AB2C-3D4E"_s } }));
}
INSTANTIATE_TEST_SUITE_P(Reasons, RefusedMessage, testing::ValuesIn(refusals), byName);

TEST_F(Window, ShowsAMessageAsItIsWhateverStandsInIt)
{
    answer(202);
    const QString text =
        u"<b>x</b> &amp; \u0007\u202e AB2C-3D4E <img src='file:///etc/passwd'>\nend"_s;
    open(text);
    int bubbles = 0;
    for (const auto *label : window->findChildren<QLabel *>()) {
        if (label->accessibleName() != text)
            continue;
        ++bubbles;
        EXPECT_TRUE(label->text().contains(u"&amp;amp;"_s)) << label->text().toStdString();
    }
    EXPECT_EQ(bubbles, 2) << "what is prepared, and what is sent";
    hands::Finger().tap(window->btnSend);
    ASSERT_TRUE(isSent());
    EXPECT_EQ(QJsonDocument::fromJson(server.requests().at(0).body)[u"text"].toString(), text);
}

TEST_F(Window, ClosesAtOnceEvenWhileItSends)
{
    server.pause();
    open();
    hands::click(window->btnSend);
    ASSERT_TRUE(QTest::qWaitFor([this] { return server.requests().size() == 1; }));
    hands::key(Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    window.reset();
    server.proceed();
    open();
    hands::click(window->btnClose);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(server.requests().size(), 1U);
}

} // namespace
