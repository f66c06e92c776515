#include "Client.h"

namespace {
/// `parloquin-sandbox exec` at free ports.
std::vector<std::string> exec(const std::vector<std::string> &host)
{
    std::vector<std::string> words { SANDBOX_PROGRAM, "exec", "--port", "0", "--page", "0" };
    words.insert(words.end(), host.begin(), host.end());
    return words;
}

std::vector<std::string> shell(const std::string &script)
{
    return exec({ "/bin/sh", "-c", script });
}

/// What stands behind \p name in a line of its own.
std::string valueOf(const std::string &name, const std::string &output)
{
    std::smatch found;
    std::regex_search(output, found, std::regex("(?:^|\n)" + name + "=(.*)"));
    return found[1];
}

/// Whether it ends by itself within a while; one that nobody buried counts as ended.
bool ends(pid_t process)
{
    const auto patience = std::chrono::steady_clock::now() + 10s;
    for (std::string line; std::chrono::steady_clock::now() < patience;) {
        std::ifstream state("/proc/" + std::to_string(process) + "/stat");
        if (!std::getline(state, line) || line.find(") Z ") != std::string::npos)
            return true;
    }
    return false;
}
}

TEST(SandboxExec, EndsAsTheHostDoes)
{
    const std::tuple<std::vector<std::string>, int, const char *> hosts[] = {
        { shell("exit 7"), 7, "" },
        { shell("kill -TERM $$"), 128 + SIGTERM, "" },
        { shell("kill -KILL $$"), 128 + SIGKILL, "" },
        { exec({ "no-such-host" }), 127, "no-such-host: No such file" },
        { exec({ "/etc/passwd" }), 126, "/etc/passwd: Permission denied" },
    };
    for (const auto &[words, code, complaint] : hosts)
        expectEnd(words, code, complaint);
}

TEST(SandboxExec, GivesTheHostAServiceAndAMessenger)
{
    auto words = shell(
        "env; grep Exec= ${XDG_DATA_DIRS%%:*}/applications/*; grep ^Sig[BI] /proc/self/status;"
        "for call in outcomes health; do python3 -c 'import sys, urllib.request as web;"
        "print(web.urlopen(sys.argv[1], b\"{}\" if \"outcomes\" in sys.argv[1] else None).read())'"
        " http://$PARLOQUIN_SERVICE_HOST/sandbox/$call; done;"
        "for app in parlo kite murmur wrenly hushbell; do gio mime x-scheme-handler/$app"
        " | grep -c '^D.*: parloquin-messenger.desktop'; done | tr -d '\n';"
        "command -v parloquin-messenger; "
        "parloquin-messenger x:");
    words.insert(words.begin(),
        { "/usr/bin/env", "QT_LOGGING_RULES=mine=true",
            "XDG_DATA_DIRS=", "PARLOQUIN_SERVICE_HOST=127.0.0.1:1" });
    const auto output = expectEnd(words, 2); // the messenger's, of a bad link
    const auto signals = expectEnd({ "/bin/sh", "-c", "grep ^Sig[BI] /proc/self/status" }, 0);
    const auto opening =
        "Exec=parloquin-messenger --service " + valueOf("PARLOQUIN_SERVICE_HOST", output) + " %u";
    for (const std::string &part : std::vector<std::string> { R"({"status":"running"})",
             "outcomes    set", opening, signals, "11111", MESSENGER_PROGRAM })
        EXPECT_TRUE(holds(output, part));
    EXPECT_EQ(valueOf("QT_LOGGING_RULES", output), "parloquin*=true;mine=true");

    const auto folders = valueOf("XDG_DATA_DIRS", output);
    const auto folder = folders.substr(0, folders.find(':'));
    EXPECT_NE(folders.find(":/"), std::string::npos) << "only ours: " << folders;
    EXPECT_TRUE(valueOf("XDG_CONFIG_DIRS", output).starts_with(folder + ':')) << output;
    EXPECT_FALSE(std::filesystem::exists(folder)) << "left behind: " << folder;
}

TEST(SandboxExec, SaysWhenTheUsersSettingsGoFirst)
{
    const auto home =
        std::filesystem::temp_directory_path() / ("exec-test-" + std::to_string(::getpid()));
    std::filesystem::create_directories(home / "applications");
    std::ofstream(home / "applications/mine.desktop")
        << "[Desktop Entry]\nType=Application\nName=Mine\nExec=true %u\n";
    std::ofstream(home / "mimeapps.list")
        << "[Default Applications]\nx-scheme-handler/kite=mine.desktop\n";
    auto words = shell("true");
    words.insert(words.begin(),
        { "/usr/bin/env", "XDG_CONFIG_HOME=" + home.string(), "XDG_DATA_HOME=" + home.string() });
    const auto output = expectEnd(words, EXIT_SUCCESS, "kite: links do not reach");
    std::filesystem::remove_all(home);
    EXPECT_FALSE(holds(output, "parlo: links")) << output;
}

// Whoever is not in front fails to read, or is stopped.
TEST(SandboxExec, GivesTheTerminalToAHostThatIsInFrontAndTakesItBack)
{
    const TemporaryFile said;
    const auto own = shell("echo up; read line; echo host=$line");
    std::vector<std::string> words { "/usr/bin/python3", "-c", R"(if True:
        import os, pty, sys
        pid, terminal = pty.fork()
        if pid == 0:
            os.execv(sys.argv[1], sys.argv[1:])
        os.write(terminal, b"one\ntwo\nthree\n")
        try:
            while data := os.read(terminal, 9999):
                os.write(1, data)
        except OSError:  # so a terminal ends
            pass)",
        "/bin/bash", "-c", R"("$@"; read line; echo after=$line
            set -m; "$@" >$0 & until [[ $(<$0) == *up* ]]; do :; done; read line; echo beside=$line
            kill %1; wait %1; echo ended=$?)",
        said.path() };
    words.insert(words.end(), own.begin(), own.end());
    const auto output = expectEnd(words, EXIT_SUCCESS);
    for (const auto *part : { "host=one", "after=two", "beside=three", "ended=143" })
        EXPECT_TRUE(holds(output, part));
}

TEST(SandboxExec, FindsTheMessengerBesideItselfOrInThePath)
{
    const TemporaryFile alone;
    std::filesystem::copy_file(
        SANDBOX_PROGRAM, alone.path(), std::filesystem::copy_options::overwrite_existing);
    auto words = exec({ "/bin/true" });
    words[0] = alone.path();
    const auto folder = std::filesystem::path(MESSENGER_PROGRAM).parent_path().string();
    for (const auto &[path, code, said] :
        { std::tuple("/nowhere", EXIT_FAILURE, "no parloquin-messenger"),
            { folder.c_str(), EXIT_SUCCESS, "listens" } }) {
        auto command = words;
        command.insert(command.begin(), { "/usr/bin/env", std::string("PATH=") + path });
        expectEnd(command, code, said);
    }
}

TEST(SandboxExec, EndsWhatTheHostLeavesBehind)
{
    const TemporaryFile starting; // also what does not end when it is asked to
    const auto script = "setsid sh -c 'trap \"echo asked\" TERM; rm " + starting.path()
        + "; while :; do sleep 0.05; done' & echo left=$!; while [ -e " + starting.path()
        + " ]; do :; done";
    const auto output = expectEnd(shell(script), EXIT_SUCCESS, "asked");
    EXPECT_TRUE(ends(std::stoi(valueOf("left", output)))) << output;
}

TEST(SandboxExec, PassesSignalsOnAndTakesTheHostAlong)
{
    for (const int signal : { SIGTERM, SIGINT, SIGHUP }) {
        // What the host waits for is asked as well.
        Process asked(shell("trap 'exit 5' TERM INT HUP; (echo ready; exec sleep 1000); exit 6"));
        asked.waitForOutput("ready\n");
        asked.signal(signal);
        ASSERT_EQ(asked.waitForEnd(), 5) << signal;
    }

    Process deaf(shell("trap 'echo no' TERM; echo ready; while :; do sleep 0.05; done"));
    for (const auto *said : { "ready\n", "no\n" }) {
        deaf.waitForOutput(said);
        deaf.signal(SIGTERM);
    }
    EXPECT_EQ(deaf.waitForEnd(), 128 + SIGKILL) << "who asks twice means it";

    Process killed(
        shell("echo host=$$; echo service=$PARLOQUIN_SERVICE_HOST; echo ready; exec sleep 1000"));
    const auto output = killed.waitForOutput("ready\n");
    httplib::Client("http://" + valueOf("service", output)).Get("/");
    killed.waitForOutput("expected POST"); // what the service says comes while the host runs
    killed.signal(SIGKILL);
    EXPECT_EQ(killed.waitForEnd(), -SIGKILL);
    EXPECT_TRUE(ends(std::stoi(valueOf("host", output)))) << output;
}

TEST(SandboxExec, MakesARouteWhereThereIsNoneOrTellsTheHostOfOne)
{
    // As the only user of a place of their own, whose limits are not the machine's.
    const auto inside = [](const std::string &script) {
        return std::vector<std::string> { "/usr/bin/unshare", "--map-root-user", "--net", "/bin/sh",
            "-ec", script + " \"$@\"", "sh" };
    };
    const std::string up = "ip link set lo up; ";
    const std::tuple<std::string, std::string, const char *> rows[] = {
        { "exec", "running in a private network", "lo\t00000000" },
        { up + "ip route add unreachable default; exec", "in a private network", "lo\t00000000" },
        { "exec unshare --map-user=7 --map-group=8 --net", "running in a private network",
            "user=7:8" },
        { up + "echo 0 >/proc/sys/user/max_net_namespaces; exec",
            "nor a private network (unshare: ", "told=default" },
        { up
                + "ip link add net0 type veth peer name net1; ip link set net0 up; ip link set "
                  "net1 up;"
                  "ip -6 route add default dev net0; exec",
            "", "told=\n" },
    };
    for (const auto &[script, words, heard] : rows) {
        auto probe = inside(script);
        probe.emplace_back("true");
        if (Process(probe).waitForEnd() != EXIT_SUCCESS)
            GTEST_SKIP() << "no network of one's own is allowed here";
        auto command =
            shell("cat /proc/net/route; echo user=$(id -u):$(id -g); echo told=$PARLOQUIN_ROUTE");
        const auto own = inside(script);
        command.insert(command.begin(), own.begin(), own.end());
        const auto output = expectEnd(command, EXIT_SUCCESS, words);
        EXPECT_TRUE(holds(output, heard)) << words;
        EXPECT_EQ(output.find("no default route") == output.npos, words.empty()) << output;
    }
}

TEST(SandboxModem, BringsEachCodeOnce)
{
    const Sandbox sandbox;
    Process modem({ MODEM_PROGRAM, "--service", "127.0.0.1:" + std::to_string(sandbox.pagePort()),
        "/usr/bin/python3", "-c", R"(
import dbus, dbus.mainloop.glib
from gi.repository import GLib
dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
name, bus = "org.freedesktop.ModemManager1", dbus.SystemBus()
bus.add_signal_receiver(lambda path, _: print(
    path, bus.get_object(name, path).Get(f"{name}.Sms", "Text", dbus_interface=dbus.PROPERTIES_IFACE),
    flush=True), "Added", f"{name}.Modem.Messaging")
GLib.MainLoop().run())" });
    for (const auto *count : { "1", "2", "3" }) {
        sandbox.call("send-otp", { { "phoneNumber", "+905321234567" }, { "countryCode", "TR" } });
        const std::string code = sandbox.get("/sandbox/codes/last")["code"];
        const auto text = std::string("Your code is ")
                              .append(code)
                              .append(".\n\n@127.0.0.1 #")
                              .append(code)
                              .append("\n");
        modem.waitForOutput(text);
        EXPECT_EQ(modem.takeOutput(),
            std::string("/org/freedesktop/ModemManager1/SMS/") + count + ' ' + text);
    }
    modem.signal(SIGTERM); // whereupon it ends what it started
    EXPECT_EQ(modem.waitForEnd(), 128 + SIGTERM);
}
