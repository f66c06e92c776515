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

    /// Takes over from a finger that has moved the same two screens.
    /// \param upper the screen that moves all the way
    /// \param entering upper comes in (push), else it leaves (pop)
    /// \param milliseconds for the whole way
    /// \param done runs once, at the end or when finish() cuts the motion short
    void start(QWidget *lower, QWidget *upper, bool entering, int milliseconds,
        std::function<void()> done);

    /// Upper leaves as far as a finger says, until start() takes over or giveUp() leads back.
    /// \param givenUp runs once where it comes to nothing
    void follow(QWidget *lower, QWidget *upper, std::function<void()> givenUp);
    void moveTo(qreal progress); // 0..1
    void giveUp(int milliseconds);
    [[nodiscard]] bool isFollowing() const { return m_following; }

    void finish();
    [[nodiscard]] bool isRunning() const { return static_cast<bool>(m_done); }

Q_SIGNALS:
    void finished();

private:
    void setOut(QWidget *lower, QWidget *upper, bool entering, std::function<void()> done);
    void run(qreal target, int milliseconds);
    void place(qreal progress);

    QWidget *m_stage;
    QWidget *m_dim;
    QVariantAnimation m_animation;
    QPointer<QWidget> m_lower;
    QPointer<QWidget> m_upper;
    std::function<void()> m_done;
    qreal m_progress = 0;
    bool m_entering = true;
    bool m_following = false;
};

} // namespace parloquin
