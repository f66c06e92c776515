#include "Parloquin/Toolkit/EditMenu.h"

#include "Parloquin/Toolkit/AccessibleNode.h"
#include "Parloquin/Toolkit/BarButtonItem.h"
#include "Parloquin/Toolkit/CancelledTouch.h"
#include "Parloquin/Toolkit/Holdable.h"
#include "Parloquin/Toolkit/Keys.h"
#include "Parloquin/Toolkit/NavigationBar.h"
#include "Parloquin/Toolkit/Style.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyle>

#include <utility>

namespace parloquin {

namespace {
constexpr int gap = 8; // px between field and menu

QString translated(const char *text) { return QCoreApplication::translate("Parloquin", text); }
}

void EditMenu::open(QLineEdit *field, bool byKeys)
{
    if (!field->hasSelectedText())
        field->selectAll();
    auto *menu = new EditMenu(field);
    if (field->hasSelectedText()) {
        menu->add(translated(QT_TRANSLATE_NOOP("Parloquin", "Cut")), QStringLiteral("btnCut"),
            [field] { field->cut(); });
        menu->add(translated(QT_TRANSLATE_NOOP("Parloquin", "Copy")), QStringLiteral("btnCopy"),
            [field] { field->copy(); });
    }
    if (!QGuiApplication::clipboard()->text().isEmpty()) {
        menu->add(translated(QT_TRANSLATE_NOOP("Parloquin", "Paste")), QStringLiteral("btnPaste"),
            [field] { field->paste(); });
    }
    if (menu->findChildren<BarButtonItem *>().isEmpty()) {
        delete menu;
        return;
    }
    // Over what it acts on, however wide the field is. (Of an empty field Qt does not know where.)
    QRect over = field->rect();
    if (field->hasSelectedText()) {
        over &= field->inputMethodQuery(Qt::ImCursorRectangle).toRect()
            | field->inputMethodQuery(Qt::ImAnchorRectangle).toRect();
    }
    const QRect around(field->mapToGlobal(QPoint()), field->size());
    // Not every desktop says where a window is, and so it may seem to be off the screen.
    const QRect window = field->window()->geometry();
    const QRect seen = field->screen()->availableGeometry() & window;
    const QRect room = seen.isEmpty() ? window : seen;
    QRect place({}, menu->arrange(room.width()));
    place.moveCenter(field->mapToGlobal(over.center()));
    place.moveBottom(around.top() - gap);
    if (place.top() < room.top())
        place.moveTop(around.bottom() + gap);
    place.moveLeft(std::max(std::min(place.left(), room.right() - place.width()), room.left()));
    menu->setGeometry(place);
    menu->show();
    if (byKeys)
        menu->focusNextChild();
}

EditMenu::EditMenu(QLineEdit *field)
    : Pane(field, Qt::Popup)
    , m_field(field)
{
    setObjectName(QStringLiteral("editMenu"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleName(field->accessibleName());
    // As the page; a field's own direction is its text's.
    setLayoutDirection(field->parentWidget()->layoutDirection());
}

QAccessibleInterface *EditMenu::makeAccessible()
{
    return new AccessibleNode(this, QAccessible::PopupMenu);
}

void EditMenu::add(const QString &title, const QString &name, std::function<void()> action)
{
    auto *button = new BarButtonItem(title, name, this);
    connect(button, &QAbstractButton::clicked, m_field, [this, action = std::move(action)] {
        close(); // first: the field has the keyboard again when its text changes
        action();
    });
}

// In a row; where that has no room, as on a small phone in German, in a column.
QSize EditMenu::arrange(int room)
{
    const auto entries = findChildren<BarButtonItem *>();
    int all = 0;
    int widest = 0;
    for (const auto *entry : entries) {
        all += entry->sizeHint().width();
        widest = std::max(widest, entry->sizeHint().width());
    }
    const bool isColumn = all > room;
    const int rows = isColumn ? static_cast<int>(entries.size()) : 1;
    const QRect whole(0, 0, isColumn ? widest : all, rows * NavigationBar::barHeight);
    QPoint at;
    for (auto *entry : entries) {
        const QSize size(isColumn ? widest : entry->sizeHint().width(), NavigationBar::barHeight);
        entry->setGeometry(QStyle::visualRect(layoutDirection(), whole, { at, size }));
        at += isColumn ? QPoint(0, size.height()) : QPoint(size.width(), 0);
    }
    return whole.size();
}

void EditMenu::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), Style::ink); // a popup's corners are not see-through everywhere
}

void EditMenu::mousePressEvent(QMouseEvent *event)
{
    CancelledTouch::watch(*this);
    Pane::mousePressEvent(event); // beside the menu it closes it
}

bool EditMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (CancelledTouch::happens(watched, *event))
        Holdable::letGoWithin(*this);
    return Pane::eventFilter(watched, event);
}

void EditMenu::keyPressEvent(QKeyEvent *event)
{
    if (Keys::isBack(*event))
        close();
}

} // namespace parloquin
