#include "Readers/Account.h"

#include "support/Face.h"
#include "support/Widgets.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtGui/QScreen>

namespace {

// Mirrored where all is: both directions read alike.
QString frameOf(const QWidget *top, QRect global)
{
    const QPoint at = top->mapFromGlobal(global.topLeft());
    const int x = QApplication::isRightToLeft() ? top->width() - at.x() - global.width() : at.x();
    return face::placeOf({ { x, at.y() }, global.size() });
}

QString lineOf(const QWidget *top, QAccessibleInterface *node)
{
    QString line = face::wordsOf(node);
    const auto *const widget = qobject_cast<QWidget *>(node->object());
    const auto *const item = qobject_cast<const BarButtonItem *>(widget);
    line += item && item->hasKeyboardFocus() ? u" rings"_s : QString();
    const auto *const tapped = qobject_cast<const Tappable *>(widget);
    line += tapped && tapped->isDown() ? u" down"_s : QString();
    if (widget && widget->cursor().shape() != Qt::ArrowCursor)
        line += u' ' + face::nameOf(widget->cursor().shape());
    if (node->role() != QAccessible::StaticText) // letters differ, frames of what is touched do not
        line += frameOf(top, node->rect());
    if (const auto *table = qobject_cast<const TableView *>(widget)) {
        QStringList cells; // also those that are left over
        for (const auto *cell : table->findChildren<TableCell *>()) {
            if (!cell->isVisible())
                continue;
            cells << frameOf(top, { cell->mapToGlobal(QPoint()), cell->size() });
            cells.last() += cell->hasKeyboardFocus() ? u" rings"_s : QString();
            cells.last() += cell->isPressed() ? u" down"_s : QString();
            for (const auto *label : cell->findChildren<Label *>())
                cells.last() += label->isVisible() ? u' ' + label->text() : QString();
            const auto *const icon = cell->findChild<ImageView *>(u"imgKitIcon"_s);
            cells.last() += icon && !icon->image().isNull() ? u" pictured"_s : QString();
        }
        cells.sort();
        line += u" shows"_s + cells.join(QString());
    }
    return line;
}

// What readers ask of a text agrees with what it is, character by character.
void expectText(const QWidget &field, QAccessibleInterface *node, const std::string &line)
{
    auto *const text = node->textInterface();
    const QString value = node->text(QAccessible::Value);
    EXPECT_EQ(text->text(0, text->characterCount()), value) << line;
    const bool isPlain = QString::fromLatin1(value.toLatin1()) == value; // each is a character
    for (int i = 0; i < value.size(); ++i) {
        EXPECT_EQ(text->text(i, i + 1), value.mid(i, 1)) << line;
        const int found = text->offsetAtPoint(text->characterRect(i).center());
        EXPECT_TRUE(found == i || !isPlain) << line << ": finds " << found << " at " << i;
    }
    const int caret = field.inputMethodQuery(Qt::ImCursorPosition).toInt();
    const int anchor = field.inputMethodQuery(Qt::ImAnchorPosition).toInt();
    EXPECT_EQ(text->cursorPosition(), caret) << line;
    EXPECT_EQ(text->selectionCount(), int(caret != anchor)) << line;
    // Beside its caret, by which the others are measured, stands what is behind it.
    const QPoint behind = field.mapFromGlobal(text->characterRect(caret).topLeft());
    const auto at = field.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    EXPECT_TRUE(caret == value.size() || std::abs(behind.x() - at.x()) <= 1) << line;
    EXPECT_TRUE(text->characterRect(int(value.size())).isEmpty()) << line;
    EXPECT_TRUE(node->state().selectableText) << line;
    int start = -1;
    int end = -1;
    text->attributes(0, &start, &end);
    EXPECT_EQ(end, value.size()) << line;
    text->selection(0, &start, &end);
    EXPECT_EQ(start, caret == anchor ? 0 : std::min(caret, anchor)) << line;
    EXPECT_EQ(end, caret == anchor ? 0 : std::max(caret, anchor)) << line;
}

void read(const QWidget *top, QAccessibleInterface *node, int depth, QStringList &lines)
{
    const QString line = lineOf(top, node);
    lines << QString(2 * depth, u' ') + line;
    if (node->textInterface())
        expectText(*qobject_cast<QWidget *>(node->object()), node, line.toStdString());
    for (int i = 0; i < node->childCount(); ++i) {
        auto *const below = node->child(i);
        ASSERT_TRUE(below) << "nothing at " << i << " in " << line.toStdString();
        EXPECT_EQ(below->parent(), node) << line.toStdString();
        EXPECT_EQ(node->indexOfChild(below), i) << line.toStdString();
        if (node->childCount() < 60 || !below->state().offscreen) // else too much to read
            read(top, below, depth + 1, lines);
    }
}

} // namespace

QStringList account::stateOf(QWidget *top)
{
    QStringList lines;
    if (!top->isVisible())
        return { u"the kit is closed"_s };
    read(top, QAccessible::queryAccessibleInterface(top), 0, lines);
    for (const auto *label : top->findChildren<Label *>()) {
        const auto *const bar = qobject_cast<NavigationBar *>(label->parentWidget());
        if (!bar || !label->isVisible())
            continue;
        lines << u"title "_s + label->text();
        EXPECT_EQ(label->geometry().bottom(), bar->rect().bottom()) << label->text().toStdString();
    }
    const auto *const focused = QApplication::focusWidget();
    lines << u"keyboard at "_s + (focused ? focused->objectName() : u"nothing"_s);
    const auto of = [focused](auto query) { return focused->inputMethodQuery(query).toInt(); };
    if (focused && focused->inputMethodQuery(Qt::ImEnabled).toBool()) {
        lines.last() += u", the screen's "_s + face::nameOf(Qt::InputMethodHints(of(Qt::ImHints)))
            + u' ' + face::nameOf(Qt::EnterKeyType(of(Qt::ImEnterKeyType)))
            + u" %1-%2"_s.arg(of(Qt::ImAnchorPosition)).arg(of(Qt::ImCursorPosition));
    }
    for (const auto *ring : top->findChildren<QWidget *>(u"focusRing"_s)) {
        if (ring->isVisible())
            lines << u"ring"_s + frameOf(top, { ring->mapToGlobal(QPoint()), ring->size() });
    }
    if (auto *const popup = QApplication::activePopupWidget())
        read(popup, QAccessible::queryAccessibleInterface(popup), 0, lines);
    return lines;
}

QStringList account::said(const QString &printed)
{
    static const QRegularExpression dates(u"Start Date: ([^\\]]+)\\].*?End Date: ([^\\]]+)\\]"_s,
        QRegularExpression::DotMatchesEverythingOption);
    for (const auto &each : dates.globalMatch(printed))
        EXPECT_LE(each.captured(1), each.captured(2)) << "ended before it began";
    const std::pair<const char *, const char *> masks[] = { { R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)",
                                                                "<date>" },
        { R"(\b\d{13}\b)", "<time>" }, { R"(ios \d+)", "ios *" },
        { R"(127\.0\.0\.1:\d+)", "<host>" }, { R"([A-Za-z0-9+/=]{40,})", "<signature>" },
        { R"([0-9A-F]{8}(-[0-9A-F]{4,12}){4})", "<device>" },
        { R"((deviceName|timezone|X-TRZ-Lang|X-TRZ-Sdk-Version)(\\?": ?\\?")[^"]*?(?=\\?"))",
            R"(\1\2*)" } };
    QString text = printed;
    for (const auto &[pattern, mask] : masks)
        text.replace(QRegularExpression(QLatin1String(pattern)), QLatin1String(mask));
    return text.split(u'\n', Qt::SkipEmptyParts);
}

void account::expectDrawn(QWidget *window, const QString &step)
{
    QImage seen;
    QImage fresh;
    const auto isDrawn = [&] {
        QCoreApplication::sendPostedEvents();
        const QPixmap shot = window->screen()->grabWindow(window->winId());
        seen = shot.toImage().convertToFormat(QImage::Format_RGB32);
        fresh = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
        if (auto *const popup = QApplication::activePopupWidget())
            popup->render(&fresh, window->mapFromGlobal(popup->pos()));
        return seen == fresh;
    };
    if (QTest::qWaitFor(isDrawn, 1000))
        return;
    for (int i = 0; i < fresh.width() * fresh.height(); ++i) {
        const QPoint at(i % fresh.width(), i / fresh.width());
        if (seen.valid(at) && seen.pixel(at) == fresh.pixel(at))
            continue;
        const auto *there = window->childAt(at);
        ADD_FAILURE() << step.toStdString() << ": what is seen at " << at.x() << ',' << at.y()
                      << " is not what is there: "
                      << (there ? there->objectName().toStdString() : "the window");
        return;
    }
}
