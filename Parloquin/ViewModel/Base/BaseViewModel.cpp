#include "Parloquin/ViewModel/Base/BaseViewModel.h"

#include <utility>

namespace parloquin {

BaseViewModel::BaseViewModel(std::weak_ptr<Updateable> screen)
    : presentedViewController(std::move(screen))
{
}

BaseViewModel::~BaseViewModel() = default;

} // namespace parloquin
