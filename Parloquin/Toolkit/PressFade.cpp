#include "Parloquin/Toolkit/PressFade.h"

#include "Parloquin/Toolkit/Style.h"

#include <QtWidgets/QWidget>

#include <utility>

namespace parloquin {

PressFade::PressFade(QWidget *owner, std::function<void()> changed)
    : m_owner(owner)
    , m_changed(std::move(changed))
{
    m_animation.setStartValue(1.0);
    m_animation.setEndValue(0.0);
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(
        &m_animation, &QVariantAnimation::valueChanged, m_owner, [this](const QVariant &value) {
            m_strength = value.toReal();
            m_changed();
        });
}

void PressFade::setPressed(bool pressed)
{
    if (m_pressed == pressed)
        return;
    m_pressed = pressed;
    m_animation.stop();
    const int length = pressed ? 0 : Style::duration(m_owner, Style::pressFade);
    if (length > 0) {
        m_animation.setDuration(length);
        m_animation.start();
        return;
    }
    m_strength = pressed ? 1 : 0;
    m_changed();
}

void PressFade::reset()
{
    m_animation.stop();
    m_pressed = false;
    m_strength = 0;
}

} // namespace parloquin
