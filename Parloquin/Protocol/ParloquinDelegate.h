#pragma once

#include "Parloquin/Model/Enum/ParloquinError.h"
#include "Parloquin/Reference/ParloquinExport.h"

#include <QtCore/QString>

/// \brief Hears how a verification ended.
///
/// Both calls come from the kit's network thread; only a failure that is known at once, for want of
/// a network, comes on the main thread. A host that touches widgets from them goes to the main
/// thread first (QMetaObject::invokeMethod), and never waits for it. Either may come more than
/// once: the kit stays open until the host closes it.
/// \since 1.0
class PARLOQUIN_EXPORT ParloquinDelegate {
public:
    virtual ~ParloquinDelegate();

    /// \brief The phone number is verified.
    /// \param sessionId the service's id of the verified session, for the host's own back end
    virtual void verificationDidSucceed(const QString &sessionId) = 0;

    /// \brief The verification failed; the screens stay, the user may try again.
    virtual void verificationDidFail(ParloquinError error) = 0;

protected:
    ParloquinDelegate() = default;
    /// \cond
    ParloquinDelegate(const ParloquinDelegate &) = default;
    ParloquinDelegate &operator=(const ParloquinDelegate &) = default;
    /// \endcond
};
