#pragma once

#include "Report.h"

#include <QtCore/QJsonObject>

/// The families of cases, a file each; what they measure stands at the top of that file.
void measureCalls(Report &report);
void measureContainers(Report &report);
void measureLibrary(Report &report);
void measureMessages(Report &report);
void measurePicker(Report &report);

/// \return microseconds that the first call of a process takes; a Service answers it
[[nodiscard]] double firstCall(bool withKit);

/// Run as processes of their own; the result is for probe().
[[nodiscard]] QJsonObject childFirstCall(const QString &name);
[[nodiscard]] QJsonObject childContainers();
[[nodiscard]] QJsonObject childPicker(const QString &answerFile);
