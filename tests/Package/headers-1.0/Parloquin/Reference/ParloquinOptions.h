#pragma once

#include "Parloquin/Reference/ParloquinEnvironment.h"
#include "Parloquin/Reference/ParloquinTheme.h"

/// \brief What a host decides when it creates Parloquin.
///
/// A plain value. The environment is given once, here, and cannot be read back.
/// \since 1.0
class ParloquinOptions {
public:
    ParloquinOptions(ParloquinEnvironment serviceEnvironment, bool isLogActive,
        const ParloquinTheme &containerTheme)
        : logActive(isLogActive)
        , theme(containerTheme)
        , m_environment(serviceEnvironment)
    {
    }

    /// Carried with the options. The kit's console lines print whatever it says.
    bool logActive;
    ParloquinTheme theme;

private:
    [[maybe_unused]] ParloquinEnvironment m_environment;
};
