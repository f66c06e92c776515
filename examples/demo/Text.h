#pragma once

#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtWidgets/QWidget>

class QTextLayout;

namespace demo {

/// \brief How a text of the host is set.
struct TextStyle {
    int pixels = 16;
    QFont::Weight weight = QFont::Normal;
    QColor color;
    int lineHeight = 22; // px
    bool centred = false;
    qreal spacing = 0; // px between letters
};

/// \brief Wrapped plain text with a line height of its own, which QLabel has not.
///
/// Stands at the leading edge unless centred. Each text keeps its own reading direction.
class Text : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
public:
    explicit Text(const TextStyle &style, QWidget *parent = nullptr);

    [[nodiscard]] QString text() const { return m_text; }
    void setText(const QString &text);
    /// Stands at the trailing edge: values of a table.
    void setTrailing(bool trailing);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int lay(QTextLayout &layout, int width) const;

    TextStyle m_style;
    QString m_text;
    bool m_trailing = false;
};

} // namespace demo
