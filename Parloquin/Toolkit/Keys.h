#pragma once

#include <QtGui/QKeyEvent>

class QWidget;
class QWindow;

/// \brief What keys mean on all screens.
namespace parloquin::Keys {

/// Held together with others it may be a command of the host's.
[[nodiscard]] inline bool isCommand(const QKeyEvent &key)
{
    return key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

[[nodiscard]] inline bool isEnter(const QKeyEvent &key)
{
    return !isCommand(key) && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
}

/// Goes back a screen.
[[nodiscard]] inline bool isBack(const QKeyEvent &key)
{
    if (key.key() == Qt::Key_Left)
        return (key.modifiers() & ~Qt::KeypadModifier) == Qt::AltModifier;
    return !isCommand(key) && (key.key() == Qt::Key_Escape || key.key() == Qt::Key_Back);
}

/// A key that goes on being held, whether it is marked so or not; asks what watchHolds() has seen.
[[nodiscard]] bool isRepeat(const QKeyEvent &key);
/// Whether what this part of a screen does with a key is to be done: once, however long the key is
/// held, and only where the stack around it takes presses now.
[[nodiscard]] bool acts(const QKeyEvent &key, const QWidget &part);
/// Of what this window hears, from now on; none: of nothing.
void watchHolds(QWindow *window);

} // namespace parloquin::Keys
