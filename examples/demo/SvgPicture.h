#pragma once

#include <QtSvg/QSvgRenderer>
#include <QtWidgets/QWidget>

namespace demo {

/// \brief One of the host's own pictures, sharp at any scale; shrinks where there is no room.
class SvgPicture : public QWidget {
    Q_OBJECT
public:
    explicit SvgPicture(QWidget *parent = nullptr);

    /// \param name file name below pictures/, without its ending
    void show(const QString &name);
    using QWidget::show;

    [[nodiscard]] QSize sizeHint() const override { return m_renderer.defaultSize(); }
    [[nodiscard]] QSize minimumSizeHint() const override { return { 0, 48 }; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSvgRenderer m_renderer;
};

} // namespace demo
