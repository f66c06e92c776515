#include "Parloquin/Toolkit/EmptyLook.h"

#include "Parloquin/Toolkit/Anchors.h"
#include "Parloquin/Toolkit/ImageView.h"
#include "Parloquin/Toolkit/Label.h"
#include "Parloquin/Toolkit/Style.h"

namespace parloquin {

EmptyLook::EmptyLook(QWidget *list)
    : Pane(list)
    , imgEmpty(new ImageView(this))
    , lblEmpty(new Label(this))
{
    setObjectName(QStringLiteral("emptyLook"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    imgEmpty->setObjectName(QStringLiteral("imgEmpty"));
    imgEmpty->setContentMode(ContentMode::aspectFit);
    imgEmpty->hide();
    lblEmpty->setObjectName(QStringLiteral("lblEmpty"));
    lblEmpty->setFontSize(16);
    lblEmpty->setTextColor(Style::placeholder);
    lblEmpty->setNumberOfLines(0);
    lblEmpty->setAlignment(Qt::AlignHCenter | Qt::AlignTop);

    using parloquin::height; // not the widget's own
    using parloquin::width;
    // clang-format off
    parloquin::activate(this, {
        centerX(imgEmpty)  == centerX(this),
        top(imgEmpty)      == top(this)        + 48,
        width(imgEmpty)    == 40,
        height(imgEmpty)   == 40,

        leading(lblEmpty)  == leading(this)    + 25,
        trailing(lblEmpty) == trailing(this)   - 25,
        top(lblEmpty)      == bottom(imgEmpty) + 12,
    });
    // clang-format on
}

bool EmptyLook::set(const QString &image, const QString &text)
{
    if (text == lblEmpty->text())
        return false;
    if (!text.isEmpty())
        imgEmpty->setImageNamed(image);
    imgEmpty->setVisible(!text.isEmpty());
    lblEmpty->setText(text);
    return true;
}

QString EmptyLook::text() const { return lblEmpty->text(); }

} // namespace parloquin
