#include "Parloquin/Toolkit/Typeface.h"

#include "Parloquin/Toolkit/Style.h"

#include <QtGui/QGuiApplication>

namespace parloquin {

Typeface::Typeface(int pixels, QFont::Weight weight)
    : m_font(Style::font(pixels, weight))
{
}

const QFont &Typeface::font() const
{
    if (const auto families = QGuiApplication::font().families(); families != m_font.families())
        m_font.setFamilies(families);
    return m_font;
}

} // namespace parloquin
