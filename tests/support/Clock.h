#pragma once

#include <QtCore/QAbstractAnimation>
#include <QtCore/QCoreApplication>

/// \brief The time of all animations: it stands still unless it is told to go on.
class Clock : public QAnimationDriver {
public:
    Clock() { install(); }
    void goOn(int milliseconds)
    {
        QCoreApplication::sendPostedEvents(); // what has begun begins now
        if (!isRunning()) // advanced for nothing, Qt's own time would go on without it
            return;
        m_now += milliseconds;
        advanceAnimation();
    }
    [[nodiscard]] qint64 elapsed() const override { return m_now; }

protected:
    void start() override
    {
        m_now = 0;
        QAnimationDriver::start();
    }

private:
    qint64 m_now = 0; // ms, since the first one that runs began
};
