#pragma once

#include <QtCore/QString>

namespace parloquin {

class Dump;

/// \brief Framed messages on standard output. Any thread.
class LogManager {
public:
    static LogManager &shared();

    /// The host's wish, stored. Messages print whatever it says.
    bool isActive = true;

    void log(const QString &message, bool isError) const;

private:
    LogManager() = default;
};

/// \brief Prints one line to standard output, in one piece whatever other threads print.
void print(const QString &line);
void print(const Dump &dump);

} // namespace parloquin
