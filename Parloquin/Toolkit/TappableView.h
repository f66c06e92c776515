#pragma once

#include "Parloquin/Toolkit/Boxed.h"
#include "Parloquin/Toolkit/Tappable.h"

namespace parloquin {

/// \brief A rectangle that is tapped as a whole, with whatever lies in it.
///
/// Shows the pressed tint, takes keyboard focus with a ring, and is a button to a screen reader;
/// the accessible name is its to set.
class TappableView : public Boxed<Tappable> {
    Q_OBJECT
public:
    using Boxed::Boxed;

    /// Rings outside (the default, for boxes) or inside the edge (full-width panels).
    void setRingInside(bool inside) { m_ringInside = inside; }
    [[nodiscard]] bool ringsInside() const { return m_ringInside; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_ringInside = false;
};

} // namespace parloquin
