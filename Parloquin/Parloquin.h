#pragma once

#include "Parloquin/Model/Enum/ParloquinError.h"
#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Reference/ParloquinEnvironment.h"
#include "Parloquin/Reference/ParloquinExport.h"
#include "Parloquin/Reference/ParloquinOptions.h"
#include "Parloquin/Reference/ParloquinTheme.h"
#include "Parloquin/Reference/ParloquinVersion.h"
#include "Parloquin/Reference/ParloquinViewController.h"

/// \brief Entry to the phone-number verification kit.
///
/// Create it, ask for a container, set the container's delegate, show the container:
/// \code
/// Parloquin kit(options);
/// ParloquinViewController *container = kit.viewControllerForLogin();
/// container->setKitDelegate(delegate);
/// container->show();
/// \endcode
/// Main thread only, with a QApplication alive. The object may go as soon as the container is
/// made. Nothing here fails; the failures that the delegate hears of are those of
/// ParloquinDelegate::verificationDidFail().
/// \since 1.0
class PARLOQUIN_EXPORT Parloquin {
public:
    /// \brief Default options: debug, logging on, blue bar, light status area.
    ///
    /// Unlike the other constructor it leaves the options of the process as they are.
    Parloquin();

    /// \brief Takes these options, for this object and for the whole process: the last ones win.
    /// \tparam headers leave it alone: it keeps hosts built with different headers apart
    template <int headers = PARLOQUIN_VERSION>
    explicit Parloquin(const ParloquinOptions &options)
        : Parloquin(options.record())
    {
    }

    /// \brief A new container, with nothing shared with earlier ones.
    /// \return never null; without a parent: the caller owns it
    [[nodiscard]] ParloquinViewController *viewControllerForLogin();

#if defined(PARLOQUIN_BUILDING)
    // What hosts built with 1.0 call: their options are laid out as Kept.
    explicit Parloquin(const ParloquinOptions &options);
#endif

private:
    explicit Parloquin(const ParloquinOptions::Record &record);

    // The options as 1.0 had them, and no more: an object is as large as its host's headers say, so
    // this never changes. Options that came later are kept for the process alone.
    struct Kept {
        bool logActive;
        QColor navigationBarBackgroundColor;
        ParloquinStatusBarStyle statusBarColor;
        ParloquinEnvironment environment;
    };
    Kept m_options;
};
