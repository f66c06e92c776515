#pragma once

#include "Parloquin/Protocol/Updateable.h"

#include <memory>

namespace parloquin {

/// \brief What every view model knows: the screen it drives.
///
/// Belongs to that screen alone. Concrete view models add std::enable_shared_from_this, so that
/// the answers they wait for can tell whether they are still there.
class BaseViewModel {
public:
    /// \param screen kept as presentedViewController; the way back to it is weak, so that closing a
    /// container frees screens and view models alike
    explicit BaseViewModel(std::weak_ptr<Updateable> screen);
    virtual ~BaseViewModel();
    Q_DISABLE_COPY_MOVE(BaseViewModel)

protected:
    /// \brief Tells the screen of new data. Main thread; a view model without a screen stops the
    /// program.
    void rebindScreen() const;

    /// Never changes: any thread may copy it or ask expired(); lock it on the main thread only.
    const std::weak_ptr<Updateable> presentedViewController;
};

} // namespace parloquin
