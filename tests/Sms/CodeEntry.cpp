#include "Parloquin/Networking/Helper/ApiSessionHelper.h"
#include "Sms/SmsRoad.h"

namespace {

class CodeEntry : public SmsRoad {
protected:
    void SetUp() override
    {
        SmsRoad::SetUp();
        on("check-otp", ok(R"({"sessionId":"s-1"})"));
        goToCode();
    }
};

TEST_F(CodeEntry, AHostMayDeleteTheContainerOverAMissingNetwork)
{
    // Such a request fails at once, and the host is told on the main thread.
    delegate->whenTold = [this] { container.reset(); };
    ApiSessionHelper::shared().isNetworkReachable = false;
    type(u"1"_s);
    const auto lives = std::make_shared<bool>(); // after the kit has dealt with the tap
    const auto *button = part<QAbstractButton>("btnCheck");
    QObject::connect(button, &QAbstractButton::clicked, button,
        [this, lives] { *lives = container != nullptr; });
    tap("btnCheck");
    EXPECT_TRUE(*lives) << "deleted within the tap";
    EXPECT_SOON(!container);
    ApiSessionHelper::shared().isNetworkReachable = true; // for whoever comes in this process
}

} // namespace
