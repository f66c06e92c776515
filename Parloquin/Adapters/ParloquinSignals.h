#pragma once

#include "Parloquin/Adapters/ParloquinAdaptersExport.h"
#include "Parloquin/Model/Enum/ParloquinError.h"

#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>
#include <memory>

class ParloquinDelegate;
class ParloquinViewController;

/// \brief The outcome of a verification as signals, always on the main thread.
///
/// \code
/// auto *signals = new ParloquinSignals(container);
/// connect(signals, &ParloquinSignals::succeeded, this, &Window::verified);
/// \endcode
/// It makes the container's delegate. That is an object of its own, since the kit may let go of a
/// delegate on its network thread, where no QObject of the main thread may die. An outcome that is
/// under way when this goes is dropped. Main thread only.
/// \since 1.1
class PARLOQUIN_ADAPTERS_EXPORT ParloquinSignals : public QObject {
    Q_OBJECT
public:
    /// The values of ParloquinError, for QML and QMetaEnum.
    enum Error {
        AuthorizationError = static_cast<int>(ParloquinError::authorizationError),
        ServerError = static_cast<int>(ParloquinError::serverError),
        UrlSchemeError = static_cast<int>(ParloquinError::urlSchemeError),
    };
    Q_ENUM(Error)

    /// \param container whose delegate this becomes, and whose closing it tells
    /// \param parent the container, unless another is given
    explicit ParloquinSignals(ParloquinViewController *container, QObject *parent = nullptr);
    ~ParloquinSignals() override;

    /// Sees the container's closing; passes every event on.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The service has verified the number; let your back end ask it about this id.
    void succeeded(const QString &sessionId);
    /// The number is not verified yet; the screens are still open.
    void failed(ParloquinSignals::Error error);
    /// The container was closed, by its button or by you; no outcome goes with it.
    void closed();
};

/// \brief A delegate from two functions, called on the main thread.
///
/// \param succeeded gets the session id
/// \param failed gets the reason; may be empty
/// \return what ParloquinViewController::setKitDelegate() takes. The functions die with it on the
/// main thread too, and are not called after \p context is gone.
/// \since 1.1
[[nodiscard]] PARLOQUIN_ADAPTERS_EXPORT std::shared_ptr<ParloquinDelegate> parloquinDelegate(
    QObject *context, std::function<void(const QString &sessionId)> succeeded,
    std::function<void(ParloquinError error)> failed);
