#pragma once

class QEvent;
class QSize;
class QWheelEvent;

/// \brief What all that scrolls up and down answers alike.
namespace parloquin::Scrolling {

/// How far a turn of the wheel goes, px; down is positive.
[[nodiscard]] int distanceOf(const QWheelEvent &event);
/// Answers a scroller that asks what there is to scroll.
/// \param offset, most px scrolled now, and at the end
void prepare(QEvent &event, const QSize &viewport, int offset, int most);
/// Where a scroller wants to be, px.
[[nodiscard]] int targetOf(const QEvent &event);

} // namespace parloquin::Scrolling
