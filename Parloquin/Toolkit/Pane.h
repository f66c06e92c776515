#pragma once

#include "Parloquin/Toolkit/SheetSize.h"

#include <QtWidgets/QWidget>

namespace parloquin {

/// \brief A plain widget of the kit, to hold others or to be painted by a subclass.
///
/// A host's style sheet paints a ground and a border on every bare QWidget, told by its meta
/// object; on one that has a meta object of its own, as this, it paints nothing. What size the
/// sheet gives it, it takes back.
class Pane : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;

protected:
    bool event(QEvent *event) override;

private:
    SheetSize m_sheetSize;
};

} // namespace parloquin
