#pragma once

#include "Readers/Heard.h"
#include "Screens/Container.h"
#include "support/DeveloperWords.h"
#include "support/ModemBus.h"
#include "support/Steps.h"

/// \brief The walk that is written down.
class Transcript : public ContainerTest, public testing::WithParamInterface<Qt::LayoutDirection> {
protected:
    void SetUp() override;
    void TearDown() override;

    /// One thing that somebody does, and all that comes of it.
    /// \param sends so many requests; while the server waits, they are waited for alone
    /// \param until seen at last
    void step(const QString &name, const std::function<void()> &act, size_t sends = 0,
        const std::function<bool()> &until = {});
    void open();
    void messagingRoad();
    void phoneEntry();
    void offerCode();
    void codeEntry();
    void hosts();
    void far();
    void onTheWay();
    void hold();
    void proceed();
    void key(const QString &name, Qt::Key key, size_t sends = 0);
    void around(const QString &name, int stops); ///< all of them by Tab, and back
    void tapped(const QString &name, const char *widget, size_t sends = 0,
        const std::function<bool()> &until = {});
    [[nodiscard]] std::function<bool()> told(int count) const;
    /// Takes what was seen for approved, where that is meant, and expects it.
    void expectApproved(const std::string &file) const;

    // Of walks that are written in texts of their own.
    void walk(const std::string &file);
    void command(const QString &name, const QString &rest);
    void again();
    void touch(const QString &ways, bool isCancelled);
    void holdOn(const QString &words);
    [[nodiscard]] QKeyCombination keyOf(const QString &name) const;
    [[nodiscard]] QPoint mirrored(QPoint way) const;

    QWidget page;
    ModemBus modem;
    transcript::Steps steps;

private:
    void settle(size_t sends, const std::function<bool()> &until);
    [[nodiscard]] QStringList whatCame(const QString &printed);

    const DeveloperWords m_words;
    std::unique_ptr<Heard> m_heard;
    std::unique_ptr<hands::Finger> m_finger;
    QStringList m_state;
    size_t m_sent = 0;
    qsizetype m_told = 0;
    qsizetype m_worded = 0;
    bool m_isBrief = false; // no log, and of the screen what has changed
    bool m_waits = false; // the server
    bool m_moves = false; // under a finger
    int m_messages = 0;
};
