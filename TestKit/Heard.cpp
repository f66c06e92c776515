#include "Parloquin/TestKit/Heard.h"

#include <QtTest/QTest>

namespace ParloquinTest {

Heard::Heard() = default;
Heard::~Heard() = default;

bool Heard::waits(std::optional<ParloquinError> wanted, std::chrono::milliseconds patience)
{
    if (!QTest::qWaitFor(
            [this] { return count() > m_taken; }, static_cast<int>(patience.count()))) {
        qWarning("TestKit: no outcome in %lld ms", static_cast<long long>(patience.count()));
        return false;
    }
    const QMutexLocker lock(&m_mutex);
    const Outcome &outcome = m_outcomes.at(m_taken++);
    if (outcome.error != wanted)
        qWarning("TestKit: another outcome came: %s",
            outcome.error
                ? qPrintable(QStringLiteral("failure %1").arg(static_cast<int>(*outcome.error)))
                : "success");
    else if (!wanted)
        m_sessionId = outcome.sessionId;
    return outcome.error == wanted;
}

bool Heard::success(std::chrono::milliseconds patience) { return waits(std::nullopt, patience); }

bool Heard::failure(ParloquinError error, std::chrono::milliseconds patience)
{
    return waits(error, patience);
}

QString Heard::sessionId() const { return m_sessionId; }

int Heard::count() const
{
    const QMutexLocker lock(&m_mutex);
    return static_cast<int>(m_outcomes.size());
}

void Heard::verificationDidSucceed(const QString &sessionId) { hear({ std::nullopt, sessionId }); }

void Heard::verificationDidFail(ParloquinError error) { hear({ error, {} }); }

void Heard::hear(const Outcome &outcome)
{
    const QMutexLocker lock(&m_mutex);
    m_outcomes.append(outcome);
}

} // namespace ParloquinTest
