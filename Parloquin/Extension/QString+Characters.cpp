#include "Parloquin/Extension/QString+Characters.h"

#include <QtCore/QTextBoundaryFinder>

namespace parloquin {

QString firstCharacter(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    const qsizetype end = finder.toNextBoundary();
    return end < 0 ? QString() : text.left(end);
}

QString shortenedByOne(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.toEnd();
    const qsizetype lastStart = finder.toPreviousBoundary();
    return lastStart > 0 ? text.left(lastStart) : text;
}

} // namespace parloquin
