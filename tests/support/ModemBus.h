#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <map>
#include <memory>

class QProcess;

/// A bus of the test's own, the system's, with services made of mock objects.
class ModemBus {
public:
    ModemBus();
    ~ModemBus();

    /// \param steps "start" and "end" of programs, the other words of the file `modems`, "ask",
    /// which another container does; semicolons between
    void play(const QByteArray &steps);
    /// \param words of the file `modems`
    void tell(const QStringList &words);

private:
    void start(const QString &program);

    const QTemporaryDir m_folder; // of its socket
    std::map<QString, std::unique_ptr<QProcess>> m_programs;
};
