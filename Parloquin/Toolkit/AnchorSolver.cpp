#include "Parloquin/Toolkit/AnchorSolver.h"

#include "Parloquin/Platform/Fatal.h"

#include <cmath>
#include <utility>

namespace parloquin {

namespace {

enum { start, end, centre, size };

constexpr qreal tolerance = 0.01; // px

bool isHorizontal(detail::Attribute attribute)
{
    using detail::Attribute;
    return attribute == Attribute::leading || attribute == Attribute::trailing
        || attribute == Attribute::centerX || attribute == Attribute::width;
}

int indexOf(detail::Attribute attribute)
{
    using detail::Attribute;
    switch (attribute) {
    case Attribute::leading:
    case Attribute::top:
        return start;
    case Attribute::trailing:
    case Attribute::bottom:
        return end;
    case Attribute::centerX:
    case Attribute::centerY:
        return centre;
    case Attribute::width:
    case Attribute::height:
        break;
    }
    return size;
}

QString nameOf(const QWidget *item)
{
    return item->objectName().isEmpty()
        ? QStringLiteral("an unnamed %1").arg(QLatin1String(item->metaObject()->className()))
        : item->objectName();
}

std::optional<qreal> heightForWidth(const QWidget *item, const AnchorSolver::Place &place)
{
    if (!place.horizontal[size] || !item->hasHeightForWidth())
        return {};
    return item->heightForWidth(static_cast<int>(std::floor(*place.horizontal[size] + tolerance)));
}

[[noreturn]] void contradiction(const QWidget *item, qreal is, qreal other)
{
    fatal(QStringLiteral("anchors: %1 is given two places (%2 and %3); drop a row of its table")
              .arg(nameOf(item))
              .arg(is)
              .arg(other));
}

}

AnchorSolver::AnchorSolver(QWidget *root, const QList<Constraint> &rows)
    : m_root(root)
    , m_rows(rows)
{
    const auto meet = [this](QWidget *item) {
        if (!item || m_places.contains(item))
            return;
        if (item != m_root && !m_root->isAncestorOf(item)) {
            fatal(QStringLiteral("anchors: %1 is not inside %2; give it its parent first")
                      .arg(nameOf(item), nameOf(m_root)));
        }
        m_places.insert(item, {});
        m_items.append(item);
    };
    for (const auto &row : rows) {
        meet(row.left.item);
        meet(row.right.item);
    }
    auto &whole = m_places[root];
    whole.horizontal = { 0, root->width(), root->width() / 2.0, root->width() };
    whole.vertical = { 0, root->height(), root->height() / 2.0, root->height() };
}

const QHash<QWidget *, AnchorSolver::Place> &AnchorSolver::solve()
{
    while (spread()) { }
    while (askTexts()) { }
    check();
    return m_places;
}

std::optional<qreal> *AnchorSolver::slot(const detail::Expression &expression)
{
    auto &place = m_places[expression.item];
    auto &axis = isHorizontal(expression.attribute) ? place.horizontal : place.vertical;
    return &axis[static_cast<std::size_t>(indexOf(expression.attribute))];
}

bool AnchorSolver::assign(const detail::Expression &expression, qreal value)
{
    auto *known = slot(expression);
    if (*known)
        return false;
    *known = value;
    return true;
}

bool AnchorSolver::complete(Axis &axis)
{
    const auto &[from, to, middle, length] = axis;
    Axis found;
    if (from && to)
        found = { from, to, (*from + *to) / 2, *to - *from };
    else if (from && length)
        found = { from, *from + *length, *from + *length / 2, length };
    else if (to && length)
        found = { *to - *length, to, *to - *length / 2, length };
    else if (middle && length)
        found = { *middle - *length / 2, *middle + *length / 2, middle, length };
    else if (from && middle)
        found = { from, 2 * *middle - *from, middle, 2 * (*middle - *from) };
    else if (to && middle)
        found = { 2 * *middle - *to, to, middle, 2 * (*to - *middle) };
    else
        return false;

    bool changed = false;
    for (const auto &known : axis)
        changed |= !known;
    axis = found;
    return changed;
}

bool AnchorSolver::spread()
{
    bool changed = false;
    for (const auto &row : m_rows) {
        const auto &left = row.left;
        const auto &right = row.right;
        const auto rightValue = right.item ? *slot(right) : std::optional<qreal>(qreal { 0 });
        if (rightValue) {
            changed |= assign(left, *rightValue + right.constant - left.constant);
        } else if (const auto leftValue = *slot(left)) {
            changed |= assign(right, *leftValue + left.constant - right.constant);
        }
    }
    for (auto *item : std::as_const(m_items)) {
        changed |= complete(m_places[item].horizontal);
        changed |= complete(m_places[item].vertical);
    }
    return changed;
}

// Whoever has an answer is asked in the same round, so that the order of rows says nothing.
bool AnchorSolver::askTexts()
{
    QList<std::pair<QWidget *, qreal>> answers;
    for (auto *item : std::as_const(m_items)) {
        const auto &place = m_places[item];
        if (place.vertical[size])
            continue; // laying a text out takes long
        if (const auto answer = heightForWidth(item, place))
            answers.append({ item, *answer });
    }
    for (const auto &[item, answer] : std::as_const(answers)) {
        auto &length = m_places[item].vertical[size];
        if (length) {
            fatal(QStringLiteral("anchors: rows tie the size of %1 to another text's; fix one of "
                                 "the two by a row")
                      .arg(nameOf(item)));
        }
        length = answer;
        while (spread()) { }
    }
    return !answers.isEmpty();
}

void AnchorSolver::check()
{
    for (auto *item : m_items) {
        const auto &place = m_places[item];
        if (place.horizontal[start] && place.vertical[start] && place.horizontal[size]
            && place.vertical[size])
            continue;
        const bool across = !place.horizontal[start] || !place.horizontal[size];
        fatal(QStringLiteral("anchors: nothing fixes where %1 stands %2; add a row to its table")
                  .arg(nameOf(item),
                      across ? QStringLiteral("from side to side")
                             : QStringLiteral("from top to bottom")));
    }
    for (const auto &row : m_rows) {
        const qreal is = slot(row.left)->value_or(0) + row.left.constant;
        const qreal other =
            row.right.constant + (row.right.item ? slot(row.right)->value_or(0) : 0);
        if (std::abs(is - other) > tolerance)
            contradiction(row.left.item, is, other);
    }
}

} // namespace parloquin
