#pragma once

#include <QtWidgets/QProxyStyle>

namespace ParloquinTest {

/// \brief A style whose motion takes as long as is said, whatever the machine's own says; 0:
/// screens are there at once.
class PacedStyle : public QProxyStyle {
public:
    /// \param duration in ms
    /// \param base name of the style for all else; by default the application's first
    explicit PacedStyle(int duration, const QString &base = {})
        : QProxyStyle(base)
        , m_duration(duration)
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration
            ? m_duration
            : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_duration;
};

} // namespace ParloquinTest
