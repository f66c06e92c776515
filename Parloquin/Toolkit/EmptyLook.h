#pragma once

#include "Parloquin/Toolkit/Pane.h"

namespace parloquin {

class ImageView;
class Label;

/// \brief What a list shows in place of rows: a symbol over a line of text.
///
/// Near the top, clear of the progress overlay's plate in the middle; transparent for the mouse.
class EmptyLook : public Pane {
    Q_OBJECT
public:
    explicit EmptyLook(QWidget *list);

    /// \param image one of the kit's own
    /// \param text empty: nothing is shown
    /// \return whether that is another look than before
    bool set(const QString &image, const QString &text);
    [[nodiscard]] QString text() const;

protected:
    bool event(QEvent *event) override;

private:
    void layOut();

    ImageView *imgEmpty;
    Label *lblEmpty;
};

} // namespace parloquin
