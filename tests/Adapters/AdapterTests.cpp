// Outcomes as a host's main thread hears them, over the real library and sandbox.
#include <QtCore/QMetaEnum>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <Parloquin/Adapters/ParloquinSignals.h>
#include <Parloquin/Parloquin.h>
#include <Parloquin/TestKit/Person.h>
#include <Parloquin/TestKit/Sandbox.h>
#include <gtest/gtest.h>

#include <thread>

using namespace ParloquinTest;
using namespace Qt::StringLiterals;

namespace {

TEST(Signals, TellTheWholeStoryOnTheMainThread)
{
    Sandbox sandbox;
    switchMotionOff();
    auto *const container = Parloquin().viewControllerForLogin();
    container->setAttribute(Qt::WA_DeleteOnClose);
    const QPointer outcome(new ParloquinSignals(container));
    QSignalSpy succeeded(outcome, &ParloquinSignals::succeeded);
    QSignalSpy failed(outcome, &ParloquinSignals::failed);
    QSignalSpy closed(outcome, &ParloquinSignals::closed);
    bool isOnMain = true;
    const auto look = [&] { isOnMain &= QThread::currentThread() == qApp->thread(); };
    QObject::connect(outcome, &ParloquinSignals::succeeded, outcome, look, Qt::DirectConnection);
    QObject::connect(outcome, &ParloquinSignals::failed, outcome, look, Qt::DirectConnection);

    container->show();
    Person person(sandbox, container);
    ASSERT_TRUE(person.asksForCode(u"470123456"_s));
    sandbox.answers(u"check-otp"_s, QJsonArray { u"wrongCode"_s, u"cut"_s, u"success"_s });
    const QString code = sandbox.lastCode();
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(person.types(code));
    ASSERT_TRUE(QTest::qWaitFor([&] { return succeeded.count() == 1; }));
    EXPECT_TRUE(sandbox.confirms(succeeded.at(0).at(0).toString()));
    ASSERT_EQ(failed.count(), 2);
    const auto names = QMetaEnum::fromType<ParloquinSignals::Error>();
    EXPECT_STREQ(names.valueToKey(failed.at(0).at(0).value<ParloquinSignals::Error>()),
        "AuthorizationError");
    EXPECT_STREQ(
        names.valueToKey(failed.at(1).at(0).value<ParloquinSignals::Error>()), "ServerError");
    EXPECT_TRUE(isOnMain);

    const QPointer<QWidget> watched = container;
    container->close();
    EXPECT_EQ(closed.count(), 0); // whoever filters the event after it may keep the kit open
    ASSERT_TRUE(QTest::qWaitFor([&] { return watched.isNull(); }));
    EXPECT_EQ(closed.count(), 1);
    EXPECT_TRUE(outcome.isNull()) << "it stays, though nobody has it";
}

TEST(Signals, TellOfNoClosingButOneThatTheAppLetsBe)
{
    class Refusing : public QObject {
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() != QEvent::Close)
                return false;
            event->ignore();
            return true;
        }
    } refusing;
    std::unique_ptr<ParloquinViewController> container(Parloquin().viewControllerForLogin());
    container->installEventFilter(&refusing);
    QObject page;
    QSignalSpy closed(new ParloquinSignals(container.get(), &page), &ParloquinSignals::closed);
    container->show();
    container->close();
    QCoreApplication::processEvents();
    EXPECT_TRUE(container->isVisible());
    EXPECT_EQ(closed.count(), 0);
    container->removeEventFilter(&refusing);
    container->close();
    container.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(closed.count(), 1) << "deleted at once, it was closed all the same";
}

/// Tells where it dies.
struct Mark {
    std::thread::id *died;
    ~Mark() { *died = std::this_thread::get_id(); }
};

TEST(DelegateOfFunctions, CallsAndLetsGoOnTheMainThread)
{
    std::thread::id died;
    QStringList heard;
    auto context = std::make_unique<QObject>();
    auto delegate = parloquinDelegate(
        context.get(),
        [&heard, mark = std::make_shared<Mark>(Mark { &died })](const QString &id) {
            heard += QThread::currentThread() == qApp->thread() ? id : u"elsewhere"_s;
        },
        [&heard](ParloquinError error) { heard += QString::number(static_cast<int>(error)); });
    died = {};
    delegate->verificationDidFail(ParloquinError::serverError);
    EXPECT_EQ(heard, QStringList()); // never before the call that failed returns
    std::thread([&delegate] { delegate->verificationDidSucceed(u"id"_s); }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, QStringList({ u"1"_s, u"id"_s }));
    std::thread([last = std::move(delegate)] {}).join(); // with no call under way that has them too
    EXPECT_EQ(died, std::thread::id());
    QCoreApplication::processEvents();
    EXPECT_EQ(died, std::this_thread::get_id());

    delegate = parloquinDelegate(context.get(), {}, {});
    delegate->verificationDidFail(ParloquinError::serverError); // nobody wants to know
    QCoreApplication::processEvents();
    const auto late = [&heard](const auto &) { heard += u"late"_s; };
    delegate = parloquinDelegate(context.get(), late, late);
    delegate->verificationDidFail(ParloquinError::serverError);
    delegate->verificationDidSucceed(u"id"_s);
    context.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(heard.size(), 2);
}

} // namespace
