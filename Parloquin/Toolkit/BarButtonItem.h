#pragma once

#include "Parloquin/Toolkit/Tappable.h"
#include "Parloquin/Toolkit/Typeface.h"

namespace parloquin {

/// \brief A text button of the navigation bar: 17 px, white, 48 high, at least 60 wide.
class BarButtonItem : public Tappable {
    Q_OBJECT
public:
    /// \param name becomes objectName and, with the title, what automation finds it by
    BarButtonItem(const QString &title, const QString &name, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Typeface m_face;
};

} // namespace parloquin
