#include "Parloquin/Adapters/Qml/Verification.h"

#include "Parloquin/Adapters/ParloquinSignals.h"
#include "Parloquin/Parloquin.h"

#include <QtQml/QQmlInfo>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtWidgets/QApplication>

Verification::Verification(QObject *parent)
    : QObject(parent)
{
}

Verification::~Verification() { delete m_container; }

QWindow *Verification::window() const
{
    if (m_window)
        return m_window;
    for (QObject *object = parent(); object; object = object->parent()) {
        if (auto *const given = qobject_cast<QWindow *>(object))
            return given;
        if (const auto *const item = qobject_cast<QQuickItem *>(object))
            return item->window();
    }
    return nullptr;
}

void Verification::setWindow(QWindow *window)
{
    if (m_window == window)
        return;
    m_window = window;
    Q_EMIT windowChanged();
}

void Verification::open()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        qmlWarning(this) << "the kit's screens are widgets: make a QApplication in main(), of Qt "
                            "Widgets, in place of the QGuiApplication";
        return;
    }
    // One that was closed just now has not told yet, and shows nothing any more.
    if (m_container && !m_container->isVisible())
        letGo(m_container);
    if (m_container) {
        m_container->raise();
        m_container->activateWindow();
        return;
    }
    m_container = Parloquin().viewControllerForLogin();
    const auto *const outcome = new ParloquinSignals(m_container);
    connect(outcome, &ParloquinSignals::succeeded, this, &Verification::succeeded);
    connect(outcome, &ParloquinSignals::failed, this,
        [this](auto error) { Q_EMIT failed(static_cast<Error>(error)); });
    // Deleted by that, not on close: the outcome would go with it before it has told.
    connect(outcome, &ParloquinSignals::closed, this,
        [this, container = m_container.data()] { letGo(container); });

    // A window of its own: as a child of the Qt Quick window it would never get the keyboard.
    m_container->winId();
    if (QWindow *const over = window()) {
        m_container->windowHandle()->setTransientParent(over);
        m_container->setWindowModality(Qt::WindowModal);
        const QRect place(QPoint(), m_container->size());
        m_container->move(place.translated(over->geometry().center() - place.center()).topLeft());
    }
    m_container->show();
    m_container->activateWindow();
    Q_EMIT activeChanged();
}

void Verification::letGo(ParloquinViewController *container)
{
    container->deleteLater();
    if (m_container != container)
        return; // another has come
    m_container.clear();
    Q_EMIT activeChanged();
    Q_EMIT closed();
}

void Verification::close()
{
    if (m_container)
        m_container->close();
}
