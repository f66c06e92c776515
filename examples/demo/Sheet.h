#pragma once

#include <QtCore/QVariantAnimation>
#include <QtWidgets/QWidget>

#include <functional>

namespace demo {

/// \brief Slides a page over the widget it lies in, and away again.
///
/// The page fills its parent and follows its size. Belongs to the page and goes with it.
class Sheet : public QObject {
    Q_OBJECT
public:
    enum class Edge { bottom, trailing };

    Sheet(QWidget *page, Edge edge);

    /// \param then runs once the page covers its parent
    void slideIn(std::function<void()> then = {});
    /// \param then runs once the page is out of view; may delete it
    void slideOut(std::function<void()> then = {});
    /// At once, without a slide.
    void cover();
    [[nodiscard]] bool isMoving() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void run(qreal to, std::chrono::milliseconds duration, std::function<void()> then);
    void place();

    QWidget *m_page;
    Edge m_edge;
    qreal m_out = 1; // share of the page beyond the edge
    QVariantAnimation m_motion;
    std::function<void()> m_then;
};

} // namespace demo
