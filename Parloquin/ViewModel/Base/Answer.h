#pragma once

#include "Parloquin/Extension/Encodable+Extension.h"
#include "Parloquin/Extension/RawValues.h"
#include "Parloquin/Manager/LogManager.h"
#include "Parloquin/Model/Enum/ParloquinError.h"
#include "Parloquin/Networking/Client/Result.h"
#include "Parloquin/Platform/MainQueue.h"
#include "Parloquin/Protocol/Updateable.h"

#include <QtCore/QString>

#include <memory>
#include <optional>
#include <utility>

/// \file
/// What view models do with any answer, on the network thread. Each calls these in an order of its
/// own: what a host hears before the overlay goes is part of how the call behaves.

namespace parloquin {

/// Later on the main thread. \param screen what it covers
void hideProgressOf(const std::weak_ptr<Updateable> &screen);

/// \brief The way back to a view model and its screen from a thread where neither may be locked.
template <class ViewModel> class AnswerOrigin {
public:
    AnswerOrigin(std::weak_ptr<ViewModel> viewModel, std::weak_ptr<Updateable> screen)
        : m_viewModel(std::move(viewModel))
        , m_screen(std::move(screen))
    {
    }

    [[nodiscard]] bool isGone() const { return m_viewModel.expired(); }

    /// Takes the progress overlay away, later on the main thread, if both are still there.
    void hideProgress() const
    {
        if (!m_viewModel.expired() && !m_screen.expired())
            hideProgressOf(m_screen);
    }

    /// \param step runs later on the main thread, with the view model, if that is still there
    template <class Step> void onMainThread(Step step) const
    {
        onMain([weak = m_viewModel, step = std::move(step)] {
            if (const auto self = weak.lock())
                step(*self);
        });
    }

private:
    std::weak_ptr<ViewModel> m_viewModel;
    std::weak_ptr<Updateable> m_screen;
};

/// \brief The view model's list has what it will get, once all is done that is queued for the main
/// thread now.
template <class ViewModel> void settleList(const AnswerOrigin<ViewModel> &origin)
{
    origin.onMainThread([](ViewModel &self) { self.listState.settle(); });
}

/// \brief Writes what came to standard output: the envelope, or the error by its name.
/// \return the envelope, borrowed from the result; null where the call failed
template <class T> const BaseResponseModel<T> *printed(const Result<T> &result)
{
    if (const ApiError *error = result.error())
        print(rawValue(*error));
    else
        print(Dump(*result.response()));
    return result.response();
}

/// \brief Tells the host's delegate, if there is one. Any thread.
///
/// The delegate is asked for each time: the host may have replaced it since the call began.
void tellFailure(ParloquinError error);

/// \brief The same for an answer of either road: the session id alone decides, whatever else the
/// answer says of the validation.
void tellOutcome(const std::optional<QString> &sessionId);

} // namespace parloquin
