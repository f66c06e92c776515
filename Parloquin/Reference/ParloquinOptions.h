#pragma once

#include "Parloquin/Reference/ParloquinEnvironment.h"
#include "Parloquin/Reference/ParloquinTheme.h"
#include "Parloquin/Reference/ParloquinVersion.h"

/// \brief What a host decides when it creates Parloquin.
///
/// A plain value. The environment is given once, here, and cannot be read back. Later versions may
/// add fields, with defaults: a host that was built before them runs with the newer library.
/// \since 1.0
class ParloquinOptions {
public:
    /// \brief All there is to decide, in one go.
    // Never a call: programs and their plug-ins may be built with headers of two versions, and one
    // of two functions of one name would run for both.
    Q_ALWAYS_INLINE ParloquinOptions(ParloquinEnvironment serviceEnvironment, bool isLogActive,
        const ParloquinTheme &containerTheme)
        : logActive(isLogActive)
        , theme(containerTheme)
        , m_environment(serviceEnvironment)
    {
    }

    /// Carried with the options. The kit's console lines print whatever it says.
    bool logActive;
    ParloquinTheme theme; ///< look of the container

private:
    friend class Parloquin;

    // What crosses into the library, whose own options may have more fields than the host's. Fields
    // are added at the end only, those of the theme too, and are there from their `headers` on.
    struct Record {
        int headers;
        ParloquinEnvironment environment;
        bool logActive;
        QColor navigationBarBackgroundColor;
        ParloquinStatusBarStyle statusBarColor;
    };
    [[nodiscard]] Q_ALWAYS_INLINE Record record() const
    {
        return { PARLOQUIN_VERSION, m_environment, logActive, theme.navigationBarBackgroundColor,
            theme.statusBarColor };
    }

    ParloquinEnvironment m_environment;
};
