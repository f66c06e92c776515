// The demo's pages in each state and language against the approved pictures.
#include "DemoWindow.h"
#include "OutcomePage.h"
#include "support/Approved.h"
#include "support/Clock.h"
#include "support/Face.h"
#include "support/Hands.h"
#include "support/RawServer.h"
#include "support/Widgets.h"

#include <QtCore/QTranslator>

using namespace std::chrono_literals;

namespace {

class ApprovedDemo : public testing::Test {
protected:
    void SetUp() override
    {
        approved::setFont();
        setMotion(0);
        server.answer(
            "/v1.0/init", RawServer::http(200, R"({"result":{"description":"Pick an app."}})"));
        server.answer("/sandbox/health", RawServer::http(200, R"({"status":"running"})"));
        qputenv("PARLOQUIN_SERVICE_HOST", server.hostAndPort().toLatin1());
    }
    static void setMotion(int duration)
    {
        QApplication::setStyle(new ParloquinTest::PacedStyle(duration, u"Fusion"_s));
    }
    void open(const QString &language, QSize size = { 390, 844 })
    {
        const QLocale locale(language);
        QLocale::setDefault(locale);
        QApplication::setLayoutDirection(locale.textDirection());
        if (m_texts.load(locale, u"" TRANSLATIONS "/demo"_s, u"_"_s))
            QCoreApplication::installTranslator(&m_texts);
        window = std::make_unique<demo::DemoWindow>();
        window->resize(size);
        ASSERT_TRUE(comesToFront(*window));
    }
    [[nodiscard]] QWidget *part(const char *name) const
    {
        return window->findChild<QWidget *>(QLatin1String(name));
    }
    /// Of the window, or of what is between parts of it; as far as it is within a place.
    void look(const std::string &name, const std::vector<const char *> &parts = {},
        const QRect &within = { 0, 0, 390, 844 }) const
    {
        approved::expect(
            name,
            [&, this] {
                QRect place;
                for (const char *each : parts)
                    place |= QRect(part(each)->mapTo(window.get(), QPoint(-16, 0)),
                        part(each)->size() + QSize(16, 0));
                return onScreen(*window).copy((parts.empty() ? window->rect() : place) & within);
            },
            [this] { return face::of(window.get()); });
    }
    /// By the road of a person, whose try fails.
    demo::OutcomePage &goToOutcome()
    {
        window->verify();
        Q_EMIT window->findChild<ParloquinSignals *>()->failed(ParloquinSignals::ServerError);
        [this] {
            ASSERT_SOON(!window->findChild<ParloquinViewController *>() && window->isAtRest());
        }();
        return *window->findChild<demo::OutcomePage *>();
    }
    /// What the page says of the session once its back end has answered.
    void confirm(demo::OutcomePage &page, const QByteArray &answer)
    {
        const QString id = u"6f9619ff-8b86-d011-b42d-00c04fc964ff"_s;
        server.answer(
            "/v1.0/result", RawServer::http(200, R"({"meta":{"httpStatusCode":)" + answer + '}'));
        bool isOver = false;
        window->backEnd().confirm(id, [&](const QString &fault) {
            fault.isEmpty() ? page.showVerified(id, 61s) : page.showNotConfirmed(fault, 5s);
            isOver = true;
        });
        ASSERT_SOON(isOver);
    }

    const QByteArray yes =
        R"(200},"result":{"sessionId":"6f9619ff-8b86-d011-b42d-00c04fc964ff","validationStatus":true})";
    RawServer server;
    std::unique_ptr<demo::DemoWindow> window;

private:
    QTranslator m_texts;
};

TEST_F(ApprovedDemo, AtItsStart)
{
    server.pause();
    open(u"en_US"_s);
    QWidget *const verify = part("btnVerify");
    look("start, looking");
    server.proceed();
    ASSERT_SOON(verify->isEnabled());
    look("start");
    part("pageStart")->hide();
    part("pageStart")->show(); // and goes on asking
    hands::key(Qt::Key_Tab);
    look("verify, ring", { "btnVerify" });
    hands::press(verify);
    look("verify, pressed", { "btnVerify" });
    hands::moveTo(verify, { 0, -60 }); // let go of there, it is no tap
    hands::release(verify, { 0, -60 });
    look("verify, let go", { "btnVerify" });
    server.play({ RawServer::read(), RawServer::hold() }); // which is noticed after five seconds
    ASSERT_TRUE(QTest::qWaitFor([=] { return !verify->isEnabled(); }, 15000));
    look("start, not running", { "btnVerify", "lblStatus" });
    server.play({});
    ASSERT_SOON(verify->isEnabled());
    server.answer("/sandbox/health", RawServer::http(200, "{}")); // of another server
    ASSERT_SOON(!verify->isEnabled());
}

TEST_F(ApprovedDemo, OnItsWay)
{
    Clock clock;
    const auto rests = [&] {
        clock.goOn(80);
        return window->isAtRest();
    };
    for (const auto &language : { std::string("en"), std::string("ar") }) {
        setMotion(0);
        open(QString::fromStdString(language), { 320, 480 });
        goToOutcome();
        setMotion(1);
        hands::click(part("btnAgain")); // Not now
        clock.goOn(80);
        look(language + ", outcome goes");
        ASSERT_SOON(rests());
        server.pause();
        hands::click(part("btnVerify"));
        clock.goOn(80);
        auto *const kit = window->findChild<ParloquinViewController *>();
        const int height = kit->y();
        kit->close();
        EXPECT_EQ(kit->y(), height) << "it turns back where it is";
        ASSERT_SOON(rests());
        hands::click(part("btnVerify"));
        clock.goOn(80);
        ASSERT_SOON(part("container") && part("container")->isVisible());
        look(language + ", kit comes", {}, { 0, 0, 320, 380 }); // above what turns
        server.proceed();
        ASSERT_SOON(rests());
        look(language + ", kit");
        hands::click(part("btnClose"));
        clock.goOn(80);
        Q_EMIT window->findChild<ParloquinSignals *>()->failed(ParloquinSignals::ServerError);
        look(language + ", kit goes");
    }
}

TEST_F(ApprovedDemo, AtEachOutcome)
{
    using Signals = ParloquinSignals;
    open(u"en_US"_s);
    demo::OutcomePage &page = goToOutcome();
    look("no service", { "lblOutcome", "lblOutcomeWords" });
    page.showFailed(Signals::AuthorizationError, 1s);
    look("not authorised");
    page.showFailed(Signals::UrlSchemeError, 59s);
    look("no app", { "lblOutcomeWords" });
    page.showAsking();
    look("asking");
    confirm(page, R"(200},"result":{"sessionId":"?","validationStatus":true})");
    look("not confirmed", { "lblOutcomeWords" });
    page.showNotConfirmed(u"The back end did not answer: Connection refused"_s, 59s);
    look("no back end", { "lblOutcomeWords", "cardOutcome" });
    confirm(page, yes);
    look("verified");
    for (const char *button : { "btnAgain", "btnCopy" }) {
        hands::press(part(button));
        look(std::string(button) + ", pressed", { button });
        hands::moveTo(part(button), { 0, -60 });
        hands::release(part(button), { 0, -60 });
        look(std::string(button) + ", let go", { button });
    }
    hands::key(Qt::Key_Tab);
    look("done, ring", { "btnDone" });
    hands::key(Qt::Key_Tab);
    look("again, ring", { "btnDone", "btnAgain" });
    hands::click(part("btnCopy"));
    look("copied", { "btnCopy" });
    setMotion(1);
    hands::click(part("btnAgain"));
    window->findChild<ParloquinViewController *>()->close(); // on its way, the outcome under it
    ASSERT_SOON(!window->findChild<ParloquinViewController *>());
    look("closed");
}

TEST_F(ApprovedDemo, InEachLanguage)
{
    open(u"ar_EG"_s, { 320, 480 });
    ASSERT_SOON(part("btnVerify")->isEnabled());
    look("ar, start");
    confirm(goToOutcome(), yes);
    look("ar, verified");
    window->findChild<demo::OutcomePage *>()->showNotConfirmed(
        u"Not asked: Connection refused."_s, 9s);
    look("ar, no back end");
    open(u"de_DE"_s, { 320, 480 });
    goToOutcome().showFailed(ParloquinSignals::AuthorizationError, 7s);
    look("de, not authorised");
}

} // namespace
