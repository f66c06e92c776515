#pragma once

#include <QtCore/QStringList>

class QWidget;

/// \brief What the transcript writes down of the kit: alike in both directions, and in every run.
namespace account {

/// A line for all that a reader finds below \p top, for titles, and for who has the keyboard.
QStringList stateOf(QWidget *top);
/// Without what no two runs have alike.
QStringList said(const QString &printed);
/// Expects on the screen what a fresh paint shows. Nothing asks for a repaint but the events that
/// are there.
void expectDrawn(QWidget *window, const QString &step);

} // namespace account
