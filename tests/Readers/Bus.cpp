// The kit over the accessibility bus, as a reader's own process finds it.
#include "Screens/Container.h"
#include "support/Front.h"
#include "support/ModemBus.h"

#include <QtCore/QEventLoop>
#include <QtCore/QProcess>
#include <QtCore/QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

QByteArray countries()
{
    QByteArray list;
    for (int section = 0; section < 26; ++section) {
        for (int row = 0; row < 4; ++row) {
            // One without a country code is the current one of a picker that was given none.
            const QString code = section == 1 && row == 2
                ? QString()
                : uR"("countryCode":"%1%2",)"_s.arg(section).arg(row);
            list += uR"({%1"title":"%2%3 land","phoneCode":"+%4%5"},)"_s
                        .arg(code, QChar(u'A' + section), QChar(u'a' + row))
                        .arg(section)
                        .arg(row)
                        .toUtf8();
        }
    }
    return R"({"result":{"list":[)" + list.chopped(1) + "]}}";
}

class Bus : public ContainerTest { };

TEST_F(Bus, AReaderOfAnotherProcessWalksBothRoads)
{
    answerBothRoads();
    answer("/v1.0/country", countries());
    ModemBus modem;
    modem.play("start bus; start service; await; modem 0 20801");
    int messages = 0;
    server.pause();
    present();
    ASSERT_TRUE(comesToFront(*container));

    // A loop that sleeps between its looks would let the reader wait at each of its calls.
    QEventLoop loop;
    QProcess reader;
    reader.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QString heard;
    const auto listen = [this, reader = &reader, heard = &heard, modem = &modem,
                            messages = &messages] {
        while (reader->canReadLine()) {
            *heard = QString::fromUtf8(reader->readLine()).trimmed();
            if (*heard == QLatin1String("proceed"))
                server.proceed();
            if (*heard == QLatin1String("come back") && settle(2))
                comeBack();
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
    EXPECT_EQ(delegate->outcomes(), QStringList({ u"succeeded S-1"_s, u"succeeded S-2"_s }));
    EXPECT_EQ(server.requests().back().parameters().value(u"code"_s), u"7K2"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !container->isVisible(); }));
}

} // namespace
