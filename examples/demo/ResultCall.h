#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

namespace demo {

/// \brief The one call that a back end makes to the verification service: is this session verified?
///
/// A value; docs/backend.md tells the same in words, examples/backend in other languages.
class ResultCall {
public:
    /// \param service host and port of the verification service
    ResultCall(const QString &service, QString sessionId);

    [[nodiscard]] const QNetworkRequest &request() const { return m_request; }
    [[nodiscard]] const QByteArray &body() const { return m_body; }

    enum class Answer { verified, notVerified, unknown, none };
    /// \param reply finished
    [[nodiscard]] Answer answerIn(QNetworkReply &reply) const;

private:
    QString m_sessionId;
    QNetworkRequest m_request;
    QByteArray m_body;
};

} // namespace demo
