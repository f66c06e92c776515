#pragma once

#include <QtCore/QMetaEnum>
#include <QtGui/QAccessible>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <string>

/// \brief What a reader finds of a window, as text.
namespace face {

template <class E> QString nameOf(E value)
{
    const auto all = QMetaEnum::fromType<E>();
    const auto number = static_cast<int>(value);
    return all.isFlag() ? QString::fromLatin1(all.valueToKeys(number))
                        : QString::fromLatin1(all.valueToKey(number));
}

inline QString statesOf(QAccessible::State state)
{
    const std::pair<bool, const char *> all[] = { { state.focusable != 0, "focusable" },
        { state.focused != 0, "focused" }, { state.selectable != 0, "selectable" },
        { state.selected != 0, "selected" }, { state.checkable != 0, "checkable" },
        { state.checked != 0, "checked" }, { state.disabled != 0, "disabled" },
        { state.invisible != 0, "invisible" }, { state.offscreen != 0, "offscreen" },
        { state.busy != 0, "busy" }, { state.readOnly != 0, "read only" },
        { state.editable != 0, "editable" }, { state.hasPopup != 0, "has popup" },
        { state.defaultButton != 0, "default" }, { state.modal != 0, "modal" } };
    QString text;
    for (const auto &[isSet, name] : all)
        text += isSet ? QStringLiteral(", ") + QLatin1String(name) : QString();
    return text;
}

/// All but its place.
inline QString wordsOf(QAccessibleInterface *node)
{
    QString line =
        nameOf(node->role()) + QStringLiteral(" \"%1\"").arg(node->text(QAccessible::Name));
    const std::pair<QAccessible::Text, const char *> texts[] = { { QAccessible::Description,
                                                                     "more" },
        { QAccessible::Value, "value" }, { QAccessible::Help, "help" } };
    for (const auto &[kind, name] : texts) {
        if (const QString text = node->text(kind); !text.isEmpty())
            line += QStringLiteral(" %1 \"%2\"").arg(QLatin1String(name), text);
    }
    line += statesOf(node->state());
    if (auto *actions = node->actionInterface(); actions && !actions->actionNames().isEmpty())
        line += QStringLiteral(" [%1]").arg(actions->actionNames().join(QStringLiteral(", ")));
    return line;
}

inline QString placeOf(const QRect &place)
{
    return QStringLiteral(" at %1,%2 %3x%4")
        .arg(QString::number(place.x()), QString::number(place.y()), QString::number(place.width()),
            QString::number(place.height()));
}

/// A line for each part that shows, below the one that holds it.
inline QString of(const QWidget *top, QAccessibleInterface *node, int depth = 0)
{
    if (node->state().invisible)
        return {};
    const QRect place(top->mapFromGlobal(node->rect().topLeft()), node->rect().size());
    QString text = QString(2 * depth, u' ') + wordsOf(node) + placeOf(place) + u'\n';
    for (int i = 0; i < node->childCount(); ++i)
        text += of(top, node->child(i), depth + 1);
    return text;
}

/// And its title, and who has the keyboard.
inline std::string of(QWidget *window)
{
    const auto *const focused = QApplication::focusWidget();
    return (of(window, QAccessible::queryAccessibleInterface(window)) + window->windowTitle()
        + QStringLiteral(", keyboard at ") + (focused ? focused->objectName() : QString()) + u'\n')
        .toStdString();
}

} // namespace face
