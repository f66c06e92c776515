#pragma once

#include <QtCore/QRect>

#include <optional>

class QEvent;
class QWidget;

namespace parloquin {

/// \brief Takes back the sizes that a host's style sheet sets for a widget of the kit.
class SheetSize {
public:
    /// Whether to be told of it.
    [[nodiscard]] static bool heeds(const QEvent &event);
    /// \param event that the widget has had
    void follow(QWidget &widget, const QEvent &event);

private:
    std::optional<QRect> m_place; // of the widget before the sheet came
};

} // namespace parloquin
