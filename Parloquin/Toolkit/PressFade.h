#pragma once

#include <QtCore/QVariantAnimation>

#include <functional>

class QWidget;

namespace parloquin {

/// \brief How strongly a press shows: at once when it begins, fading out when it ends.
class PressFade {
public:
    /// \param owner its style says whether anything fades; outlives this
    /// \param changed runs whenever the strength has changed
    PressFade(QWidget *owner, std::function<void()> changed);

    void setPressed(bool pressed);
    /// Ends at once: what it showed now shows something else.
    void reset();
    [[nodiscard]] qreal strength() const { return m_strength; } // 0..1

private:
    QWidget *m_owner;
    std::function<void()> m_changed;
    QVariantAnimation m_animation;
    qreal m_strength = 0;
    bool m_pressed = false;
};

} // namespace parloquin
