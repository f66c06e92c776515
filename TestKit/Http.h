#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ParloquinTest {

struct HttpAnswer {
    int status = 0; ///< 0: none came
    QByteArray body;
};

/// \brief One request to a neighbour on this machine, and its answer; waits for it, 10 s at most.
///
/// Turns no event loop, so that nothing of the app under test happens in between.
/// \param body JSON to post; null: get
[[nodiscard]] HttpAnswer http(
    const QString &host, const QByteArray &path, const QByteArray &body = {});

} // namespace ParloquinTest
