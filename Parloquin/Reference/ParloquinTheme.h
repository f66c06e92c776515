#pragma once

#include <QtGui/QColor>

/// \brief Look of the device's status area over the container.
/// \since 1.0
enum class ParloquinStatusBarStyle {
    standard = 0, ///< dark glyphs
    lightContent = 1, ///< light glyphs
};

/// \brief The part of the container's look that a host chooses.
///
/// A plain value; copy it freely.
/// \since 1.0
struct ParloquinTheme {
    /// Carried and readable; the container's bar is always blue.
    QColor navigationBarBackgroundColor;
    ParloquinStatusBarStyle statusBarColor; ///< what `preferredStatusBarStyle` tells a shell
};
