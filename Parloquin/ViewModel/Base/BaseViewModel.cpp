#include "Parloquin/ViewModel/Base/BaseViewModel.h"

#include "Parloquin/Platform/Fatal.h"

#include <utility>

namespace parloquin {

BaseViewModel::BaseViewModel(std::weak_ptr<Updateable> screen)
    : presentedViewController(std::move(screen))
{
}

BaseViewModel::~BaseViewModel() = default;

void BaseViewModel::rebindScreen() const
{
    const auto screen = presentedViewController.lock();
    if (!screen)
        fatal(QStringLiteral("View model: no screen to show the data; pass one when creating it"));
    screen->rebindData();
}

} // namespace parloquin
