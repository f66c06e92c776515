#pragma once

#include "Parloquin/Toolkit/TableView.h"

#include <QtGui/QColor>

namespace parloquin {

class ImageView;
class Label;
class View;
struct ThirdPartyKitModel;

/// \brief A messaging app on the app list: its icon and text on a rounded box of its colour.
class ThirdPartyKitTableCell : public TableCell {
    Q_OBJECT
public:
    explicit ThirdPartyKitTableCell(QWidget *parent = nullptr);

    /// \brief Shows an app. Its icon follows when it is here.
    ///
    /// An icon asked for earlier, for the app that this row showed before it was recycled, still
    /// arrives.
    void configure(const ThirdPartyKitModel &kit);

protected:
    void stateChanged() override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setAnchors();
    void showBackground();

    View *viewBack;
    ImageView *imgKitIcon;
    Label *lblKitName;

    QColor m_color;
    QString m_icon; // what the image view shows or waits for
};

} // namespace parloquin
