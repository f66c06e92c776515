#pragma once

#include "Parloquin/Toolkit/Pane.h"

namespace parloquin {

/// \brief A pane of glass: whoever points at what lies under it, with a mouse, a finger or a pen,
/// reaches nothing, and nor does what the pane lies in.
class Shield : public Pane {
    Q_OBJECT
public:
    explicit Shield(QWidget *parent = nullptr);

protected:
    bool event(QEvent *event) override;
};

} // namespace parloquin
