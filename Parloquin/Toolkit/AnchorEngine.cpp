#include "Parloquin/Toolkit/AnchorEngine.h"

#include "Parloquin/Toolkit/AnchorSolver.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <utility>

namespace parloquin {

namespace {

// Half a pixel goes to the leading side.
int whole(qreal value) { return static_cast<int>(std::ceil(value - 0.5)); }

// A line thinner than a pixel still needs a widget to draw in.
int wholeSize(qreal size) { return size > 0 ? std::max(whole(size), 1) : 0; }

int depthOf(const QWidget *item)
{
    int depth = 0;
    for (const auto *parent = item->parentWidget(); parent; parent = parent->parentWidget())
        ++depth;
    return depth;
}

}

AnchorEngine &AnchorEngine::of(QWidget *root)
{
    auto *engine = root->findChild<AnchorEngine *>(QString(), Qt::FindDirectChildrenOnly);
    return *(engine ? engine : new AnchorEngine(root));
}

AnchorEngine::AnchorEngine(QWidget *root)
    : QObject(root)
    , m_root(root)
{
    watch(root);
}

void AnchorEngine::watch(QWidget *parent)
{
    if (m_parents.contains(parent))
        return;
    m_parents.append(parent);
    parent->installEventFilter(this);
}

void AnchorEngine::add(const Constraint &row)
{
    m_rows.append({ row, row.left.item, row.right.item });
    // A widget whose text asks for another size tells its parent.
    for (const auto *item : { row.left.item, row.right.item }) {
        if (item && item != m_root && item->parentWidget())
            watch(item->parentWidget());
    }
}

void AnchorEngine::layOut()
{
    if (m_layingOut)
        return;
    const QScopedValueRollback guard(m_layingOut, true);

    m_rows.removeIf(
        [](const Row &row) { return !row.left || (row.constraint.right.item && !row.right); });
    QList<Constraint> rows;
    for (const auto &row : std::as_const(m_rows))
        rows.append(row.constraint);
    AnchorSolver solver(m_root, rows);
    const auto &places = solver.solve();

    QList<QWidget *> items = places.keys();
    items.removeOne(m_root);
    // Parents first: children are placed inside of where their parents now stand.
    std::stable_sort(items.begin(), items.end(),
        [](const QWidget *a, const QWidget *b) { return depthOf(a) < depthOf(b); });
    const bool mirrored = m_root->layoutDirection() == Qt::RightToLeft;
    for (auto *item : std::as_const(items)) {
        const auto &place = places[item];
        const auto &[leadingEdge, trailingEdge, centreX, wide] = place.horizontal;
        const QSize extent(wholeSize(*wide), wholeSize(*place.vertical[3]));
        QPoint corner(whole(*leadingEdge), whole(*place.vertical[0]));
        if (mirrored)
            corner.setX(m_root->width() - corner.x() - extent.width());
        item->setGeometry({ item->parentWidget()->mapFrom(m_root, corner), extent });
    }
}

bool AnchorEngine::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Show:
        if (watched == m_root)
            layOut();
        break;
    case QEvent::LayoutDirectionChange:
    case QEvent::FontChange:
        if (watched == m_root && hasSize())
            layOut();
        break;
    case QEvent::LayoutRequest:
        if (hasSize()) {
            forgetRequests();
            layOut();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// Before the first size there is nothing to lay out; showing root does.
bool AnchorEngine::hasSize() const
{
    return !m_root->testAttribute(Qt::WA_PendingResizeEvent) || m_root->isVisible();
}

// What other texts have asked for by now is part of the layout to come. Not left for later, as a
// screen would be painted in between.
void AnchorEngine::forgetRequests()
{
    m_parents.removeAll(nullptr);
    for (const auto &parent : std::as_const(m_parents)) {
        const bool isLaidOutByUsAlone = parent == m_root
            || !(parent->layout()
                || parent->findChild<AnchorEngine *>({}, Qt::FindDirectChildrenOnly));
        if (isLaidOutByUsAlone)
            QCoreApplication::removePostedEvents(parent, QEvent::LayoutRequest);
    }
}

void activate(QWidget *root, std::initializer_list<Constraint> rows)
{
    auto &engine = AnchorEngine::of(root);
    for (const auto &row : rows)
        engine.add(row);
    // Later, as more tables may follow in this call; a root not shown yet waits for that.
    QCoreApplication::postEvent(root, new QEvent(QEvent::LayoutRequest));
}

} // namespace parloquin
