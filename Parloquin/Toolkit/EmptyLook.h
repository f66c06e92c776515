#pragma once

#include "Parloquin/Toolkit/Pane.h"

namespace parloquin {

class ImageView;
class Label;

/// \brief What a list shows in place of rows: a symbol over a line of text.
///
/// Near the top; transparent for the mouse.
class EmptyLook : public Pane {
    Q_OBJECT
public:
    explicit EmptyLook(QWidget *list);

    /// \param image one of the kit's own
    /// \param text empty: nothing is shown
    /// \param isBesidePlate the progress overlay may be up: it keeps clear of the plate
    /// \return whether that is another look than before
    bool set(const QString &image, const QString &text, bool isBesidePlate);
    [[nodiscard]] QString text() const;

protected:
    bool event(QEvent *event) override;

private:
    void layOut();

    ImageView *imgEmpty;
    Label *lblEmpty;
    bool m_isBesidePlate = false;
};

} // namespace parloquin
