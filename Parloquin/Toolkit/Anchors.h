#pragma once

#include <QtWidgets/QWidget>

#include <initializer_list>

namespace parloquin {

/// \brief Layout by facts: each row of a table relates an edge or a size to another.
///
/// Horizontal edges, vertical edges and sizes are types of their own, so that
/// `top(a) == leading(b)` does not compile. Leading and trailing follow the layout direction.
/// Lengths are device-independent pixels. A widget whose height no row fixes takes the one
/// that its text asks for (heightForWidth).
class HorizontalAnchor;
class VerticalAnchor;
class Dimension;

namespace detail {
enum class Attribute { leading, trailing, centerX, top, bottom, centerY, width, height };
struct Expression {
    QWidget *item = nullptr; // null: the constant alone
    Attribute attribute = Attribute::width;
    qreal constant = 0;
};
} // namespace detail

struct Constraint {
    detail::Expression left;
    detail::Expression right;
};

/// One kind of anchor; arithmetic keeps the kind.
template <class Kind> class Anchor {
public:
    Anchor(QWidget *item, detail::Attribute attribute)
        : m_expression { item, attribute, 0 }
    {
    }

    friend Kind operator+(Kind anchor, qreal constant)
    {
        anchor.m_expression.constant += constant;
        return anchor;
    }
    friend Kind operator-(Kind anchor, qreal constant) { return anchor + -constant; }
    friend Constraint operator==(const Kind &left, const Kind &right)
    {
        return { left.m_expression, right.m_expression };
    }

protected:
    detail::Expression m_expression;
};

class HorizontalAnchor : public Anchor<HorizontalAnchor> {
    using Anchor::Anchor;
};
class VerticalAnchor : public Anchor<VerticalAnchor> {
    using Anchor::Anchor;
};
class Dimension : public Anchor<Dimension> {
public:
    using Anchor::Anchor;
    friend Constraint operator==(const Dimension &left, qreal constant)
    {
        return { left.m_expression, { nullptr, detail::Attribute::width, constant } };
    }
};

inline HorizontalAnchor leading(QWidget *item) { return { item, detail::Attribute::leading }; }
inline HorizontalAnchor trailing(QWidget *item) { return { item, detail::Attribute::trailing }; }
inline HorizontalAnchor centerX(QWidget *item) { return { item, detail::Attribute::centerX }; }
inline VerticalAnchor top(QWidget *item) { return { item, detail::Attribute::top }; }
inline VerticalAnchor bottom(QWidget *item) { return { item, detail::Attribute::bottom }; }
inline VerticalAnchor centerY(QWidget *item) { return { item, detail::Attribute::centerY }; }
inline Dimension width(QWidget *item) { return { item, detail::Attribute::width }; }
inline Dimension height(QWidget *item) { return { item, detail::Attribute::height }; }

/// \brief Keeps the descendants of root where the rows say, through every resize and text change.
///
/// Rows may relate any descendants of root to each other and to root itself; a later call adds
/// rows. Rows that contradict each other or leave a widget's place open stop the program, naming
/// the widget: that is a mistake in the table.
void activate(QWidget *root, std::initializer_list<Constraint> rows);

} // namespace parloquin
