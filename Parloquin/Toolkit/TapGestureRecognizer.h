#pragma once

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <optional>

namespace parloquin {

/// \brief Notices taps anywhere on a view, its children included: they come to the view once the
/// child has done its part.
///
/// Works only while it is attached to a view. Main thread only.
class TapGestureRecognizer : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// \param exempt taps on it do not count; may be null
    void attach(QWidget *view, QWidget *exempt);
    void detach();
    [[nodiscard]] bool isAttached() const { return m_view != nullptr; }

Q_SIGNALS:
    void tapped();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> m_view;
    QPointer<QWidget> m_exempt;
    std::optional<QPoint> m_pressedAt; // global
};

} // namespace parloquin
