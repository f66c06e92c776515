#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QGuiApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace parloquin::Style {

QFont font(int pixels, QFont::Weight weight)
{
    QFont font(QGuiApplication::font().families());
    font.setPixelSize(pixels);
    font.setWeight(weight);
    // Hinted advances are whole pixels: text would run wider at ratio 1 than at 2.
    font.setHintingPreference(QFont::PreferNoHinting);
    // Said and not left open: a widget's or a painter's font fills in what another leaves open.
    font.setItalic(false);
    font.setUnderline(false);
    font.setOverline(false);
    font.setStrikeOut(false);
    font.setKerning(true);
    font.setStretch(QFont::Unstretched);
    font.setCapitalization(QFont::MixedCase);
    font.setLetterSpacing(QFont::PercentageSpacing, 100);
    font.setWordSpacing(0);
    return font;
}

int lineSpacing(const QFont &font, const QString &text)
{
    const int size = font.pixelSize() > 0 ? font.pixelSize() : 16;
    const bool arabic = std::any_of(text.cbegin(), text.cend(),
        [](QChar character) { return character.script() == QChar::Script_Arabic; });
    if (arabic)
        return qRound(size * 1.75);
    return size == 17 ? 22 : qRound(size * 1.25);
}

int duration(const QWidget *widget, std::chrono::milliseconds motion)
{
    const bool moves =
        widget->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, widget) > 0;
    return moves ? static_cast<int>(motion.count()) : 0;
}

} // namespace parloquin::Style
