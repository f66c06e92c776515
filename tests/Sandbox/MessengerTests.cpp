#include "Client.h"

TEST(Messenger, SendsThePreparedMessageAndEnds)
{
    const Sandbox sandbox(
        json { { "texts", { { "message", "Grüße & 100 % <b>{code}</b> \"so\"\n+1?" } } } });
    struct Running {
        json reference;
        TemporaryFile file { "" };
        std::string picture = file.path() + ".png";
        std::unique_ptr<Process> messenger;
    };
    std::map<std::string, Running> all; // at once: each stays open for a while once it has sent
    for (const auto *app : { "parlo", "kite", "murmur", "wrenly", "hushbell" }) {
        const auto started = sandbox.call("start", { { "app", app } }).result();
        auto &[reference, file, picture, messenger] = all[app];
        reference = started.at("reference");
        messenger = std::make_unique<Process>(std::vector<std::string> { MESSENGER_PROGRAM,
            "--service", "127.0.0.1:" + std::to_string(sandbox.port()), "--auto-send", "--picture",
            picture, started.at("deeplink") });
    }
    for (const auto &[app, running] : all) {
        ASSERT_EQ(running.messenger->waitForEnd(), 0) << app << running.messenger->output();
        const auto checked = sandbox.call("check", { { "reference", running.reference } });
        EXPECT_NE(checked.sessionId(), "") << app;
        EXPECT_TRUE(std::filesystem::remove(running.picture)) << app;
    }
}

TEST(Messenger, SaysHowItIsStartedAndWhatItCannotWrite)
{
    EXPECT_TRUE(
        holds(expectEnd({ MESSENGER_PROGRAM, "--help" }, 0, "--picture <FILE.png>"), "LINK"));
    Process drawing({ MESSENGER_PROGRAM, "--picture", "/nowhere/a.png",
        "parlo://send?app=parlo&to=" + std::string(100, 'a') + "&text=" + std::string(1000, 'b') });
    drawing.waitForOutput("parloquin-messenger: /nowhere/a.png: cannot be written");
}
