// What readers hear of a code, and what of it last: they stop what they say for what comes later.
#include "Readers/Heard.h"
#include "Screens/Hosts.h"
#include "support/ModemBus.h"

#include <thread>

namespace {

class Order : public HostTest { };

// The message often comes while the page slides in.
TEST_F(Order, ThePageItsFirstBoxAndTheOffer)
{
    const Heard heard;
    ModemBus modem;
    modem.play("start bus; start service; await; modem 0 20801");
    open();
    goToNumber();
    pick(u"Norway"_s);
    enterNumber(u"4123"_s);
    Heard::events.clear();
    for (const auto key : { Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Backtab, Qt::Key_Tab })
        hands::key(key); // which selects, and no more need be said of it
    EXPECT_EQ(Heard::events.join(u"; "_s).toStdString(),
        "focus Send SMS; focus Phone number; focus Country, Norway; focus Phone number");
    const std::jthread sender([&modem](const std::stop_token &stop) {
        for (int message = 0; !stop.stop_requested(); ++message)
            modem.tell({ u"sms"_s, u"0"_s, QString::number(message), u"3"_s,
                uR"(Code\n@127.0.0.1 #7K2)"_s });
    });
    for (bool early = false; !early && !HasFailure();) {
        Heard::events.clear();
        hands::key(Qt::Key_Return);
        EXPECT_SOON(visible("btnMessageCode"));
        early = !visible("txtCode0")->hasFocus();
        EXPECT_SOON(Heard::events.contains(u"says Fill in 7K2 from your message"_s));
        const QStringList order =
            Heard::events.filter(QRegularExpression(u"^(focus|caret|says) "_s));
        EXPECT_EQ(order.join(u"; "_s).toStdString(),
            "focus Loading; focus Phone number; focus SMS; focus Code, digit 1 of 3; says Fill in "
            "7K2 from your message");
        ASSERT_TRUE(seen("btnCheck"));
        tap("btnBack");
        ASSERT_TRUE(seen("txtPhoneNumber"));
    }
}

} // namespace
