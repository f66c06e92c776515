#pragma once

#include "Parloquin/Reference/ParloquinOptions.h"

#include <QtCore/QMutex>

#include <memory>
#include <optional>

class ParloquinDelegate;

namespace parloquin {

/// \brief What every part of the kit may reach: the last options and the host's delegate.
class ParloquinSingleton {
public:
    static ParloquinSingleton &shared();

    /// Main thread only.
    std::optional<ParloquinOptions> options;

    /// Any thread: outcomes are reported from the network thread while the host may replace it.
    [[nodiscard]] std::shared_ptr<ParloquinDelegate> delegate() const;
    void setDelegate(std::shared_ptr<ParloquinDelegate> delegate);

private:
    ParloquinSingleton();

    mutable QMutex m_mutex;
    std::shared_ptr<ParloquinDelegate> m_delegate;
};

} // namespace parloquin
