#pragma once

#include <QtWidgets/QWidget>

#include <Parloquin/Adapters/ParloquinSignals.h>

#include <chrono>

namespace demo {

class Card;
class HostButton;
class SvgPicture;
class Text;

/// \brief How an attempt ended: the answer first, the evidence second.
class OutcomePage : public QWidget {
    Q_OBJECT
    /// "asking", "verified" or "failed": for whoever automates the host.
    Q_PROPERTY(QString state MEMBER m_state CONSTANT)
public:
    explicit OutcomePage(QWidget *parent = nullptr);

    /// The kit has succeeded, the back end has not yet answered.
    void showAsking();
    void showVerified(const QString &sessionId, std::chrono::seconds taken);
    void showNotConfirmed(const QString &fault, std::chrono::seconds taken);
    void showFailed(ParloquinSignals::Error error, std::chrono::seconds taken);

Q_SIGNALS:
    void doneTapped();
    void againTapped();

private:
    void show(const QString &state, const QString &title, const QString &words);
    void fill(const QList<std::pair<QString, QString>> &rows);
    QWidget *makeSessionRow(const QString &sessionId);

    QString m_state;
    SvgPicture *m_picture;
    Text *m_title;
    Text *m_words;
    QWidget *m_cardPlace;
    QWidget *m_card = nullptr;
    HostButton *m_first;
    HostButton *m_second;
};

} // namespace demo
