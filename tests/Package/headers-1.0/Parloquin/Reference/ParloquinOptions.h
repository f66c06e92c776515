#pragma once

#include "Parloquin/Reference/ParloquinEnvironment.h"
#include "Parloquin/Reference/ParloquinTheme.h"

class ParloquinOptions {
public:
    ParloquinOptions(ParloquinEnvironment serviceEnvironment, bool isLogActive,
        const ParloquinTheme &containerTheme)
        : logActive(isLogActive)
        , theme(containerTheme)
        , m_environment(serviceEnvironment)
    {
    }

    bool logActive;
    ParloquinTheme theme;

private:
    [[maybe_unused]] ParloquinEnvironment m_environment;
};
