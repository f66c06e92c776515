// The kit over the accessibility bus, as a reader's own process finds it.
#include "Screens/Container.h"
#include "support/Widgets.h"

#include <QtCore/QEventLoop>
#include <QtCore/QProcess>

namespace {

class Bus : public ContainerTest { };

TEST_F(Bus, AReaderOfAnotherProcessWalksToASession)
{
    answerBothRoads();
    QString countries;
    for (int i = 10; i < 70; ++i)
        countries += uR"({"title":"Land %1","countryCode":"L%1","phoneCode":"+%1"},)"_s.arg(i);
    answer("/v1.0/country", R"({"result":{"list":[)" + countries.chopped(1).toUtf8() + "]}}");
    present();
    ASSERT_TRUE(comesToFront(*container));

    // A loop that sleeps between its looks would let the reader wait at each of its calls.
    QEventLoop loop;
    QProcess reader;
    reader.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QObject::connect(&reader, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(std::chrono::seconds(60), &loop, &QEventLoop::quit);
    reader.start(QStringLiteral(READER), { QString::number(QCoreApplication::applicationPid()) });
    loop.exec();
    EXPECT_EQ(reader.state(), QProcess::NotRunning) << "not done within a minute";
    EXPECT_EQ(reader.exitCode(), 0);
    EXPECT_EQ(delegate->outcomes(), QStringList(u"succeeded S-2"_s));
    EXPECT_EQ(server.requests().back().parameters().value(u"code"_s), u"7K2"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !container->isVisible(); }));
}

} // namespace
