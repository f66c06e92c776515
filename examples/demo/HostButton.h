#pragma once

#include <QtCore/QVariantAnimation>
#include <QtWidgets/QAbstractButton>

namespace demo {

/// \brief A button of the host: filled like the kit's, or a plain text.
///
/// Its focus ring lies around it, so the widget is ringMargin larger on each side than what it
/// draws.
class HostButton : public QAbstractButton {
    Q_OBJECT
public:
    enum class Kind { filled, text };
    static constexpr int ringMargin = 4; // px

    HostButton(Kind kind, const QString &title, const QString &name, QWidget *parent = nullptr);

    /// \param told in its place to a reader
    void setTitle(const QString &title, const QString &told);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    Kind m_kind;
    bool m_ring = false;
    QVariantAnimation m_fade; // 1 pressed, 0 at rest
};

} // namespace demo
