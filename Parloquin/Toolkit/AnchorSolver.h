#pragma once

#include "Parloquin/Toolkit/Anchors.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>

#include <array>
#include <optional>

namespace parloquin {

/// \brief Finds where the rows of a table put each widget, in root's coordinates.
///
/// Horizontal places are counted from root's leading edge, whichever side that is. Values spread
/// from what is known to what is equal to it until nothing moves any more; what then is still open
/// asks its text. Where the rows let only one of two texts have its size, the program stops: which
/// of them would hang on the order of the rows.
class AnchorSolver {
public:
    /// Leading, trailing, centre, size, or top, bottom, centre, size.
    using Axis = std::array<std::optional<qreal>, 4>;
    struct Place {
        Axis horizontal;
        Axis vertical;
    };

    AnchorSolver(QWidget *root, const QList<Constraint> &rows);

    /// Stops the program over an open or contradictory table.
    [[nodiscard]] const QHash<QWidget *, Place> &solve();

private:
    std::optional<qreal> *slot(const detail::Expression &expression);
    bool assign(const detail::Expression &expression, qreal value);
    bool complete(Axis &axis);
    bool spread();
    bool askTexts();
    void check();

    QWidget *m_root;
    const QList<Constraint> &m_rows;
    QList<QWidget *> m_items; // in the table's order
    QHash<QWidget *, Place> m_places;
};

} // namespace parloquin
