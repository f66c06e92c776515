#pragma once

#include "Parloquin/Model/Enum/ParloquinError.h"
#include "Parloquin/Reference/ParloquinViewController.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtGui/QWindow>
#include <QtQml/QQmlEngine>

/// \brief The kit in a window of its own, over the window of a Qt Quick app.
///
/// \code{.qml}
/// import Parloquin
///
/// Verification {
///     id: verification
///     onSucceeded: sessionId => backEnd.ask(sessionId)
/// }
/// Button { text: "Verify"; onClicked: verification.open() }
/// \endcode
/// The kit's screens are widgets: the app needs a QApplication, where Qt Quick alone would do with
/// a QGuiApplication. Without one open() says so, and does nothing else.
class Verification : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// The app's window, which the kit's is modal to; by default that of the element's parent.
    Q_PROPERTY(QWindow *window READ window WRITE setWindow NOTIFY windowChanged)
    /// Whether the kit is open.
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)
public:
    /// The values of ParloquinError.
    enum Error {
        AuthorizationError = static_cast<int>(ParloquinError::authorizationError),
        ServerError = static_cast<int>(ParloquinError::serverError),
        UrlSchemeError = static_cast<int>(ParloquinError::urlSchemeError),
    };
    Q_ENUM(Error)

    /// \cond
    explicit Verification(QObject *parent = nullptr);
    ~Verification() override;

    [[nodiscard]] QWindow *window() const;
    void setWindow(QWindow *window);
    [[nodiscard]] bool isActive() const { return m_container != nullptr; }
    /// \endcond

    /// Shows the kit; again, brings it to the front.
    Q_INVOKABLE void open();
    /// Takes it away; closed() follows.
    Q_INVOKABLE void close();

Q_SIGNALS:
    /// The service has verified the number; let your back end ask it about this id. The kit stays
    /// open until close().
    void succeeded(const QString &sessionId);
    /// The number is not verified yet; the kit is still open.
    void failed(Verification::Error error);
    /// The kit is gone: by its Close button, or by close(). No outcome goes with it.
    void closed();
    void windowChanged(); ///< another window was set
    void activeChanged(); ///< the kit was opened or is gone

private:
    void letGo(ParloquinViewController *container);

    QPointer<QWindow> m_window;
    QPointer<ParloquinViewController> m_container;
};
