#pragma once

#include "Parloquin/Model/Enum/ParloquinError.h"
#include "Parloquin/Protocol/ParloquinDelegate.h"
#include "Parloquin/Reference/ParloquinEnvironment.h"
#include "Parloquin/Reference/ParloquinExport.h"
#include "Parloquin/Reference/ParloquinOptions.h"
#include "Parloquin/Reference/ParloquinTheme.h"
#include "Parloquin/Reference/ParloquinVersion.h"
#include "Parloquin/Reference/ParloquinViewController.h"

class PARLOQUIN_EXPORT Parloquin {
public:
    Parloquin();

    explicit Parloquin(const ParloquinOptions &options);

    [[nodiscard]] ParloquinViewController *viewControllerForLogin();

private:
    ParloquinOptions m_options;
};
