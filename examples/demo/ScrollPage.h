#pragma once

#include <QtWidgets/QScrollArea>

namespace demo {

/// \brief What of a page may need more height than there is: it scrolls then, by finger, wheel and
/// Tab.
class ScrollPage : public QScrollArea {
    Q_OBJECT
public:
    ScrollPage(QLayout *content, QWidget *parent);
};

} // namespace demo
