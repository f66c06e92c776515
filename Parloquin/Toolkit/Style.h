#pragma once

#include <QtGui/QColor>
#include <QtGui/QFont>

#include <chrono>

class QWidget;

/// \brief The look that all screens share, each value decided once.
namespace parloquin::Style {

inline constexpr QColor blue { 0, 0, 255 };
inline constexpr QColor softBlue { 0xe4, 0xe6, 0xff };
inline constexpr QColor selection { 0xbc, 0xc4, 0xff }; // behind a field's text
inline constexpr QColor ink { 0x11, 0x13, 0x22 };
inline constexpr QColor secondInk { 0x4a, 0x4f, 0x66 };
inline constexpr QColor placeholder { 0x6b, 0x70, 0x85 };
inline constexpr QColor grey { 0x80, 0x80, 0x80 };
inline constexpr QColor hairline { 0xd3, 0xd6, 0xe2 };
inline constexpr QColor pressedRow { 0xe9, 0xea, 0xff };
inline constexpr QColor pressTint { 0, 0, 0, 51 }; // over what is coloured: a fifth of black
inline constexpr QColor softPressTint { 0, 0, 255, 51 }; // over soft blue, which black greys
inline constexpr QColor headerBackground { 0xf1, 0xf2, 0xf8 };
inline constexpr QColor headerInk { 0x3c, 0x40, 0x58 };

inline constexpr qreal cornerRadius = 6; // px, of buttons, boxes and coloured rows
inline constexpr int plateSize = 80; // px, of the overlay's plate, amid the container
inline constexpr int smallestText = 11; // px, that what is too long shrinks to
inline constexpr int narrowPage = 280; // px; none is narrower at the scale it was made for
inline constexpr int strayDistance = 10; // px a finger may move and still tap

inline constexpr std::chrono::milliseconds push { 320 };
inline constexpr std::chrono::milliseconds pop { 280 };
inline constexpr std::chrono::milliseconds titleFade { 200 };
inline constexpr std::chrono::milliseconds pressFade { 180 };
inline constexpr std::chrono::milliseconds veilFade { 120 };
inline constexpr std::chrono::milliseconds scrollThumb { 800 };

/// The family of the application's font at this size (px) and weight; nothing else is inherited.
[[nodiscard]] QFont font(int pixels, QFont::Weight weight);
/// Distance from line to line (px) of text in this font; Arabic needs more than Latin.
[[nodiscard]] int lineSpacing(const QFont &font, const QString &text);
/// Milliseconds that a motion takes for this widget: 0 where its style asks for no animation.
[[nodiscard]] int duration(const QWidget *widget, std::chrono::milliseconds motion);

} // namespace parloquin::Style
