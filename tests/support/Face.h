#pragma once

#include <QtCore/QMetaEnum>
#include <QtGui/QAccessible>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <string>

/// \brief What a reader finds of a window, as text.
namespace face {

inline QString lineOf(const QWidget *top, QAccessibleInterface *node)
{
    const auto state = node->state();
    const QRect frame(top->mapFromGlobal(node->rect().topLeft()), node->rect().size());
    const QString more = node->text(QAccessible::Description);
    QString line = QLatin1String(QMetaEnum::fromType<QAccessible::Role>().valueToKey(node->role()))
        + QStringLiteral(" \"%1\"").arg(node->text(QAccessible::Name))
        + (more.isEmpty() ? more : QStringLiteral(" more \"%1\"").arg(more));
    const std::pair<bool, const char *> states[] = { { state.focusable != 0, ", focusable" },
        { state.focused != 0, ", focused" }, { state.disabled != 0, ", disabled" },
        { state.busy != 0, ", busy" } };
    for (const auto &[isSet, name] : states)
        line += QLatin1String(isSet ? name : "");
    return line
        + QStringLiteral(" at %1,%2 %3x%4\n")
              .arg(QString::number(frame.x()), QString::number(frame.y()),
                  QString::number(frame.width()), QString::number(frame.height()));
}

/// A line for each part that shows, below the one that holds it.
inline QString of(const QWidget *top, QAccessibleInterface *node, int depth = 0)
{
    if (node->state().invisible)
        return {};
    QString text = QString(2 * depth, u' ') + lineOf(top, node);
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
