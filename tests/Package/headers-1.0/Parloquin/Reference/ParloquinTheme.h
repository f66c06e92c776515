#pragma once

#include <QtGui/QColor>

enum class ParloquinStatusBarStyle {
    standard = 0,
    lightContent = 1,
};

struct ParloquinTheme {
    QColor navigationBarBackgroundColor;
    ParloquinStatusBarStyle statusBarColor;
};
