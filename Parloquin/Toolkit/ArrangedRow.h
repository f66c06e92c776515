#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <QtCore/QList>

namespace parloquin {

/// \brief Children of one width side by side in its middle, as high as itself.
///
/// Where they do not fit they and the gaps between them become narrower, each in proportion.
class ArrangedRow : public Pane {
    Q_OBJECT
public:
    /// \param wide px, each child
    /// \param gap px, between two
    ArrangedRow(int wide, int gap, QWidget *parent);

    /// From leading to trailing, in the order that they are added in.
    void add(QWidget *child);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void arrange();

    QList<QWidget *> m_children;
    int m_wide;
    int m_gap;
};

} // namespace parloquin
