#pragma once

#include "Parloquin/Platform/Fatal.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Toolkit/Screen.h"
#include "Parloquin/ViewModel/Base/BaseViewModel.h"

#include <QtCore/QPointer>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace parloquin {

/// \brief A screen with a view model of its own and a fixed order of set-up.
///
/// A concrete screen derives from this first and from Updateable after it.
template <class ViewModel> class BaseViewController : public Screen {
public:
    using Screen::Screen;

protected:
    /// Null until the screen has loaded, and for ever in one that is no Updateable.
    std::shared_ptr<ViewModel> viewModel;

    /// The same for screens that never work without one: its absence stops the program.
    [[nodiscard]] ViewModel &requiredViewModel() const
    {
        if (!viewModel)
            fatal(QStringLiteral("%1: no view model yet; show the screen first")
                      .arg(QLatin1String(metaObject()->className())));
        return *viewModel;
    }

    /// Hooks of viewDidLoad(): texts first, then the views, then what starts work.
    virtual void setBinding() { }
    virtual void setLocalization() { }
    virtual void setUI() { }

    void viewDidLoad() override
    {
        static_assert(std::is_base_of_v<BaseViewModel, ViewModel>);
        Screen::viewDidLoad();
        if (auto *self = dynamic_cast<Updateable *>(this))
            viewModel = std::make_shared<ViewModel>(self->weakReference());
        setLocalization();
        setUI();
        setBinding();
    }

    /// \brief Runs a block from the event loop, unless the screen is gone by then.
    ///
    /// For calls to the service from within an event of a widget: one that fails at once tells
    /// the delegate at once, and the host may answer by deleting the container that is still
    /// handling the event.
    void afterEvent(std::function<void()> block)
    {
        onMain([self = QPointer<Screen>(this), block = std::move(block)] {
            if (self)
                block();
        });
    }
};

} // namespace parloquin
