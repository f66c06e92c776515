#pragma once

#include "Parloquin/Toolkit/Tappable.h"
#include "Parloquin/Toolkit/Typeface.h"

#include <QtGui/QColor>

namespace parloquin {

class TextBlock;

/// \brief A button of the screens.
class Button : public Tappable {
    Q_OBJECT
public:
    enum class Kind {
        filled, ///< blue and rounded: what concludes a form
        soft, ///< the same in soft blue: an offer beside it
        link ///< text alone, which may wrap; shows no press, as nothing follows
    };

    Button(Kind kind, const QString &title, QWidget *parent);

    [[nodiscard]] int lineHeight() const; // px, of its text
    [[nodiscard]] qreal cornerRadius() const;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] TextBlock block(int width) const;

    Kind m_kind;
    Typeface m_face;
};

} // namespace parloquin
