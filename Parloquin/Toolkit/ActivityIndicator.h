#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QTimer>

namespace parloquin {

/// \brief The turning spokes: white, large, one turn a second in twelve steps.
class ActivityIndicator : public Pane {
    Q_OBJECT
public:
    explicit ActivityIndicator(QWidget *parent = nullptr);

    void startAnimating();
    void stopAnimating();
    [[nodiscard]] bool isAnimating() const { return m_timer.isActive(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTimer m_timer { this };
    int m_step = 0;
};

} // namespace parloquin
