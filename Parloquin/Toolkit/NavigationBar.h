#pragma once

#include "Parloquin/Toolkit/Pane.h"

#include <memory>

namespace parloquin {

class NavigationItem;

/// \brief The bar over the screens: a title between two buttons, 48 px high.
class NavigationBar : public Pane {
    Q_OBJECT
public:
    static constexpr int barHeight = 48; // px

    explicit NavigationBar(QWidget *parent = nullptr);
    ~NavigationBar() override;

    void setBarTintColor(const QColor &color);
    [[nodiscard]] QColor barTintColor() const;
    void setTitleColor(const QColor &color);
    [[nodiscard]] QColor titleColor() const;

    /// Keeps a picture of what the bar shows now, for the next show() to fade from.
    void rememberLook();
    /// \param item what to show; the texts cross-fade when animated
    void show(NavigationItem *item, bool animated);
    using QWidget::show;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace parloquin
