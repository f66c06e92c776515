#pragma once

#include <QtGui/QColor>

#include <chrono>

/// \brief The look of the host's own pages, each value decided once.
namespace demo::Look {

inline constexpr QColor blue { 0, 0, 255 };
inline constexpr QColor pressedBlue { 0, 0, 204 };
inline constexpr QColor page { 0xf6, 0xf7, 0xfc };
inline constexpr QColor card { 0xff, 0xff, 0xff };
inline constexpr QColor cardLine { 0xe3, 0xe5, 0xf0 };
inline constexpr QColor softBlue { 0xe4, 0xe6, 0xff };
inline constexpr QColor ink { 0x11, 0x13, 0x22 };
inline constexpr QColor secondInk { 0x57, 0x5b, 0x73 };
inline constexpr QColor success { 0x13, 0x80, 0x5b };
inline constexpr QColor fault { 0xb3, 0x26, 0x1e };
inline constexpr QColor waiting { 0x9a, 0x9e, 0xb4 };
inline constexpr QColor disabled { 0xc9, 0xcc, 0xe0 };
inline constexpr QColor disabledInk { 0x57, 0x5b, 0x73 };

inline constexpr int pageMargin = 20; // px
inline constexpr int cardRadius = 12; // px

inline constexpr std::chrono::milliseconds present { 320 };
inline constexpr std::chrono::milliseconds dismiss { 280 };
inline constexpr std::chrono::milliseconds pressFade { 180 };

} // namespace demo::Look
