#include "Parloquin/Toolkit/Slide.h"

#include "Parloquin/Toolkit/Pane.h"

#include <QtGui/QPainter>

#include <cmath>
#include <utility>

namespace parloquin {

namespace {

constexpr qreal lowerShare = 0.3; // of the upper screen's way
constexpr qreal darkest = 0.1;

class Dim : public Pane {
public:
    using Pane::Pane;
    qreal strength = 0;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(strength)));
    }
};

}

Slide::Slide(QWidget *stage)
    : QObject(stage)
    , m_stage(stage)
    , m_dim(new Dim(stage))
{
    m_dim->hide();
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) {
        if (isRunning())
            place(value.toReal());
    });
    connect(&m_animation, &QVariantAnimation::finished, this, &Slide::finish);
}

void Slide::start(
    QWidget *lower, QWidget *upper, bool entering, int milliseconds, std::function<void()> done)
{
    if (m_following && lower == m_lower && upper == m_upper) {
        m_following = false;
        m_done = std::move(done);
    } else {
        setOut(lower, upper, entering, std::move(done));
    }
    run(1, milliseconds);
}

void Slide::follow(QWidget *lower, QWidget *upper, std::function<void()> givenUp)
{
    setOut(lower, upper, false, std::move(givenUp));
    m_following = true;
}

void Slide::moveTo(qreal progress)
{
    if (m_following)
        place(progress);
}

void Slide::giveUp(int milliseconds)
{
    if (!std::exchange(m_following, false))
        return;
    run(0, milliseconds);
}

void Slide::setOut(QWidget *lower, QWidget *upper, bool entering, std::function<void()> done)
{
    finish();
    m_lower = lower;
    m_upper = upper;
    m_entering = entering;
    m_done = std::move(done);
    m_dim->raise();
    m_upper->raise();
    m_dim->show();
    place(0);
}

void Slide::run(qreal target, int milliseconds)
{
    const qreal way = std::abs(target - m_progress);
    place(m_progress); // meanwhile someone may have laid the screens out anew
    m_animation.setStartValue(m_progress);
    m_animation.setEndValue(target);
    m_animation.setDuration(qRound(milliseconds * way));
    m_animation.start();
}

void Slide::finish()
{
    // Taken out first: the callback may start the next motion.
    const auto done = std::exchange(m_done, {});
    if (!done)
        return;
    m_following = false;
    m_animation.stop();
    m_dim->hide();
    for (const auto &screen : { m_lower, m_upper }) {
        if (screen)
            screen->move(0, 0);
    }
    done();
    Q_EMIT finished();
}

void Slide::place(qreal progress)
{
    m_progress = progress;
    const qreal out = m_entering ? 1 - progress : progress; // how far upper is out of view
    const int away =
        m_stage->layoutDirection() == Qt::RightToLeft ? -m_stage->width() : m_stage->width();
    if (m_upper)
        m_upper->move(qRound(away * out), 0);
    if (m_lower)
        m_lower->move(qRound(-away * lowerShare * (1 - out)), 0);
    static_cast<Dim *>(m_dim)->strength = darkest * (1 - out);
    m_dim->setGeometry(m_stage->rect());
    m_dim->update();
}

} // namespace parloquin
