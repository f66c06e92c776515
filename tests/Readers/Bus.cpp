// The kit over the accessibility bus, as a reader's own process finds it.
#include "Screens/Container.h"
#include "support/ModemBus.h"
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
    ModemBus modem;
    modem.play("start bus; start service; await; modem 0 20801");
    int messages = 0;
    present();
    ASSERT_TRUE(comesToFront(*container));

    // A loop that sleeps between its looks would let the reader wait at each of its calls.
    QEventLoop loop;
    QProcess reader;
    reader.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QString heard;
    const auto listen = [reader = &reader, heard = &heard, modem = &modem, messages = &messages] {
        while (reader->canReadLine()) {
            *heard = QString::fromUtf8(reader->readLine()).trimmed();
            if (*heard == QLatin1String("message")) {
                modem->tell({ u"sms"_s, u"0"_s, QString::number(++*messages), u"3"_s,
                    uR"(Code\n@127.0.0.1 #7K2)"_s });
                reader->write("told\n");
            }
        }
    };
    QObject::connect(&reader, &QProcess::readyReadStandardOutput, &reader, listen);
    QObject::connect(&reader, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(std::chrono::seconds(60), &loop, &QEventLoop::quit);
    reader.start(QStringLiteral(READER), { QString::number(QCoreApplication::applicationPid()) });
    loop.exec();
    EXPECT_EQ(reader.state(), QProcess::NotRunning) << "not done within a minute";
    EXPECT_EQ(reader.exitCode(), 0);
    EXPECT_EQ(heard.toStdString(), "done");
    EXPECT_EQ(delegate->outcomes(), QStringList(u"succeeded S-2"_s));
    EXPECT_EQ(server.requests().back().parameters().value(u"code"_s), u"7K2"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !container->isVisible(); }));
}

} // namespace
