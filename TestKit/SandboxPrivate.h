#pragma once

#include "Parloquin/TestKit/Desktop.h"
#include "Parloquin/TestKit/Sandbox.h"

#include <QtCore/QProcess>

namespace ParloquinTest {

struct Sandbox::Private {
    QProcess process;
    QString host;
    Desktop desktop;

    /// \return the object that the sandbox answers with; stops the test where it refuses
    [[nodiscard]] QJsonValue ask(const QByteArray &path, const QByteArray &body = {}) const;
};

} // namespace ParloquinTest
