#include "ScrollPage.h"

#include <QtWidgets/QLayout>
#include <QtWidgets/QScroller>

namespace demo {

namespace {

/// Gives up its air first: a scroll area asks for the height that is needed, not for the best one.
class Content : public QWidget {
public:
    explicit Content(QLayout *layout) { setLayout(layout); }
    int heightForWidth(int width) const override { return layout()->minimumHeightForWidth(width); }
};

} // namespace

ScrollPage::ScrollPage(QLayout *content, QWidget *parent)
    : QScrollArea(parent)
{
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(new Content(content));
    QScroller::grabGesture(viewport(), QScroller::TouchGesture);
}

} // namespace demo
