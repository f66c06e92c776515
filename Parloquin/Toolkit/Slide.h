#pragma once

#include <QtCore/QPointer>
#include <QtCore/QVariantAnimation>
#include <QtWidgets/QWidget>

#include <functional>

namespace parloquin {

/// \brief One screen sliding over another, which moves a little the same way and dims.
///
/// Works on children of one stage; a screen deleted on the way is let go.
class Slide : public QObject {
    Q_OBJECT
public:
    explicit Slide(QWidget *stage);

    /// \param upper the screen that moves all the way
    /// \param entering upper comes in (push), else it leaves (pop)
    /// \param done runs once, at the end or when finish() cuts the motion short
    void start(QWidget *lower, QWidget *upper, bool entering, int milliseconds,
        std::function<void()> done);
    void finish();
    [[nodiscard]] bool isRunning() const { return static_cast<bool>(m_done); }

private:
    void place(qreal progress);

    QWidget *m_stage;
    QWidget *m_dim;
    QVariantAnimation m_animation;
    QPointer<QWidget> m_lower;
    QPointer<QWidget> m_upper;
    std::function<void()> m_done;
    bool m_entering = true;
};

} // namespace parloquin
