#pragma once

#include <QtCore/QProcess>
#include <QtCore/QTemporaryFile>

#include <vector>

/// \brief The responder, at the address that the kit is built for, for as long as this lives.
class Service {
public:
    struct Answer {
        QByteArray call; ///< as "init"
        QByteArray body;
        bool isEncrypted = true;
    };
    explicit Service(const std::vector<Answer> &answers);
    ~Service();
    Q_DISABLE_COPY_MOVE(Service)

private:
    QTemporaryFile m_answers;
    QProcess m_responder;
};
