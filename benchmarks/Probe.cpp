#include "Probe.h"

#include <QtCore/QJsonDocument>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <vector>

double clockNow()
{
    return static_cast<double>(std::chrono::steady_clock::now().time_since_epoch().count());
}

QJsonObject probe(const char *program, const QStringList &arguments)
{
    std::vector<QByteArray> words { QByteArray(BENCHMARK_FOLDER "/") + program };
    for (const QString &argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    std::array<int, 2> pipe {};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        qFatal("no pipe");
    posix_spawn_file_actions_t actions {};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);

    // Not by QProcess: forking this large process takes as long as some of what is measured.
    pid_t child = 0;
    const double spawnedAt = clockNow();
    const int failure = ::posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipe[1]);

    QByteArray output;
    std::array<char, 4096> block {};
    for (ssize_t count = 0; (count = ::read(pipe[0], block.data(), block.size())) > 0;)
        output.append(block.data(), count);
    ::close(pipe[0]);
    int status = 0;
    if (failure != 0 || ::waitpid(child, &status, 0) != child || status != 0)
        qFatal("%s failed", argv[0]);
    QJsonObject result = QJsonDocument::fromJson(output).object();
    result.insert(QStringLiteral("spawnedAt"), spawnedAt);
    return result;
}
