#pragma once

#include <QtCore/QByteArray>

namespace parloquin {

/// \brief Looks a binary property list through before a reader that trusts it gets it.
///
/// A list is a graph of numbered objects: one that goes round, nests deep or names an object twice
/// over and over grows without bound when it is unfolded into a tree.
/// \return whether it unfolds into a tree of reasonable depth and size within its own bytes
[[nodiscard]] bool isPlainBinaryPropertyList(const QByteArray &bytes);

} // namespace parloquin
