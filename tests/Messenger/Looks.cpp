// The window in each state, of each app and in each language, against the approved pictures.
#include "sandbox/messenger/MessengerWindow.h"
#include "sandbox/messenger/TapButton.h"
#include "support/Approved.h"
#include "support/Face.h"
#include "support/Hands.h"
#include "support/RawServer.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>

using namespace messenger;
using namespace Qt::StringLiterals;

namespace {

class ApprovedMessenger : public testing::Test {
protected:
    void SetUp() override
    {
        approved::setFont();
        answer(404, R"({"error":"no <b>verification</b> waits for this message"})");
    }
    void answer(int status, const QByteArray &body = "{}")
    {
        server.answer("/sandbox/messages", RawServer::http(status, body));
    }
    void open(const QString &app, int width = 390, const QString &to = u"A & B"_s,
        const QString &text = u"Send <b>\nAB2C-3D4E"_s)
    {
        window =
            std::make_unique<MessengerWindow>(DeepLink { app, to, text }, server.hostAndPort());
        window->resize(width, 640);
        ASSERT_TRUE(comesToFront(*window));
    }
    /// Of the window, or of a place in it.
    void look(const std::string &name, const QRect &place = {}) const
    {
        approved::expect(
            name,
            [&, this] { return onScreen(*window).copy(place.isNull() ? window->rect() : place); },
            [this] { return face::of(window.get()); });
    }
    [[nodiscard]] QRect placeOf(const QWidget *part) const
    {
        return { part->mapTo(window.get(), QPoint()), part->size() };
    }
    /// Prepared, on its way, and refused.
    void lookAtTheRoad(const std::string &name)
    {
        look(name);
        server.pause();
        hands::click(window->btnSend);
        QCoreApplication::sendPostedEvents();
        look(name + ", sending");
        server.proceed();
        look(name + ", refused");
    }

    RawServer server;
    std::unique_ptr<MessengerWindow> window;
};

TEST_F(ApprovedMessenger, InEachState)
{
    open(u"parlo"_s);
    lookAtTheRoad("parlo");
    answer(202);
    hands::click(window->btnSend);
    look("parlo, sent");
    open(u"of an app that is none of ours"_s);
    look("parlo");
    for (const auto *button : { window->btnSend, window->btnClose }) {
        const std::string name = button == window->btnSend ? "send" : "close";
        const QRect place = placeOf(button);
        hands::moveTo(button, hands::middleOf(button));
        look(name, place);
        hands::press(button);
        look(name + ", pressed", place);
        hands::moveTo(button, { 0, -60 }); // let go of there, it is no tap
        look(name + ", drawn off", place);
        hands::release(button, { 0, -60 });
    }
    const QRect both = placeOf(window->btnSend) | placeOf(window->btnClose);
    hands::key(Qt::Key_Tab);
    look("send, ring", both);
    hands::key(Qt::Key_Tab);
    look("close, ring", both);
    hands::key(Qt::Key_Backtab);
    look("send, ring", both);
}

TEST_F(ApprovedMessenger, OfEachApp)
{
    for (const QString &app : AppLook::apps().mid(1)) {
        const QPixmap icon = AppLook::of(app).icon(20, 2);
        EXPECT_TRUE(icon.width() == 40 && icon.devicePixelRatio() == 2) << icon.width();
        open(app, 390, u"A <i>& B"_s);
        server.pause();
        hands::click(window->btnSend);
        look(app.toStdString());
        approved::expect(app.toStdString() + ", icon",
            [this] { return window->windowIcon().pixmap(64).toImage(); });
    }
}

TEST_F(ApprovedMessenger, InEachLanguage)
{
    for (const auto *language : { "ar", "de" }) {
        QTranslator texts;
        ASSERT_TRUE(texts.load(u"" TRANSLATIONS "/messenger_%1.qm"_s.arg(QLatin1String(language))));
        QCoreApplication::installTranslator(&texts);
        QApplication::setLayoutDirection(QLocale(QLatin1String(language)).textDirection());
        // In a small window, where names and words have no room.
        open(u"wrenly"_s, 320, u"Anmeldung der Beispielgesellschaft mbH & Co."_s,
            u"Code AB2C-3D4E "_s + QString(50, u'w'));
        lookAtTheRoad(language);
        open(u"kite"_s, 320, u"تسجيل الدخول إلى خدمات شركة المثال المحدودة للاتصالات"_s, u"B"_s);
        look(std::string(language) + ", an Arabic name");

        // So does the program, to a person of that language.
        QFont font;
        font.setFamilies({ u"Inter"_s, u"Noto Sans Arabic"_s });
        QApplication::setFont(font);
        open(u"wrenly"_s, 390, u"A"_s, u"B"_s);
        window->resize(390, 844);
        const QTemporaryDir folder;
        const QString file = folder.filePath(u"seen.png"_s);
        qputenv("LC_ALL", language);
        qputenv("PARLOQUIN_MESSENGER_PICTURE", file.toUtf8());
        QProcess program;
        program.start(u"" MESSENGER ""_s, { u"wrenly://send?app=wrenly&to=A&text=B"_s });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return QImage(file).convertToFormat(QImage::Format_RGB32)
                    == window->grab().toImage().convertToFormat(QImage::Format_RGB32);
            },
            15000))
            << language;
        qunsetenv("LC_ALL");
        program.kill();
        program.waitForFinished();
        approved::setFont();
    }
}

} // namespace
