#pragma once

#include <QtWidgets/QProxyStyle>

/// \brief A style without motion: screens are there at once.
class StillStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *data) const override
    {
        if (hint == SH_Widget_Animation_Duration)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};
