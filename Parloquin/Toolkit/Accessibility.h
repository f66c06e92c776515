#pragma once

namespace parloquin {

/// \brief Makes screen readers see the toolkit's widgets as what they are.
///
/// Rows are items of a list that can be pressed, plain boxes and pictures no buttons. Main thread;
/// every call after the first does nothing.
void installAccessibility();

} // namespace parloquin
