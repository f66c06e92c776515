#include "Service.h"

#include <QtCore/QUrl>

Service::Service(const std::vector<Answer> &answers)
{
    if (!m_answers.open())
        qFatal("no temporary file");
    for (const Answer &answer : answers) {
        const QByteArray http = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
            + QByteArray(answer.isEncrypted ? "X-TRZ-Encrypted: 1\r\n" : "")
            + "Connection: close\r\nContent-Length: " + QByteArray::number(answer.body.size())
            + "\r\n\r\n" + answer.body;
        m_answers.write(answer.call + ' ' + QByteArray::number(http.size()) + '\n' + http);
    }
    m_answers.flush();
    const QUrl service(QStringLiteral("http://" PARLOQUIN_SERVICE_HOST));
    m_responder.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_responder.start(QStringLiteral(BENCHMARK_FOLDER "/parloquin-benchmark-responder"),
        { QString::number(service.port()), m_answers.fileName() });
    if (!m_responder.waitForReadyRead())
        qFatal("no responder");
}

Service::~Service()
{
    m_responder.kill();
    m_responder.waitForFinished();
}
