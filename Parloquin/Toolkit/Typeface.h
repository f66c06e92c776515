#pragma once

#include <QtGui/QFont>

namespace parloquin {

/// \brief A font of the kit's own: of the application's font it takes the family and nothing else.
///
/// A host's style sheet changes what a widget calls its font(), so none of the kit's is asked for
/// it.
class Typeface {
public:
    Typeface(int pixels, QFont::Weight weight);

    /// Follows the application when that changes its family.
    [[nodiscard]] const QFont &font() const;

private:
    mutable QFont m_font; // kept: it remembers what drawing with it has looked up
};

} // namespace parloquin
