#pragma once

#include "Quiet.h"

#include <QtCore/QEvent>
#include <QtWidgets/QApplication>

#include <chrono>
#include <functional>

/// \brief Says when a widget of this name has been painted for the first time.
class FirstPaint : public QObject {
public:
    FirstPaint(QString name, std::function<void()> done)
        : m_name(std::move(name))
        , m_done(std::move(done))
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_done && watched->objectName() == m_name) {
            // From the event loop: what is painted together is on the screen by then.
            QMetaObject::invokeMethod(this, std::exchange(m_done, {}), Qt::QueuedConnection);
        }
        return false;
    }

private:
    QString m_name;
    std::function<void()> m_done;
};

/// For main(): runs until a widget of the name has been painted, then prints when that was.
inline int runToFirstPaint(std::FILE *results, const QString &name)
{
    const FirstPaint paint(name, [results] {
        std::fprintf(results, "{\"at\":%lld}\n",
            static_cast<long long>(std::chrono::steady_clock::now().time_since_epoch().count()));
        std::fflush(results);
        QCoreApplication::quit();
    });
    return QApplication::exec();
}
