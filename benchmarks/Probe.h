#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

/// Nanoseconds of the clock that all processes of a machine share.
[[nodiscard]] double clockNow();

/// \brief Runs a program of this folder to its end and reads the one line of JSON that it prints.
///
/// `spawnedAt` is added: clockNow() just before. A program that fails ends the run.
[[nodiscard]] QJsonObject probe(const char *program, const QStringList &arguments);
