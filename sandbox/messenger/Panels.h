#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>

namespace messenger {

/// \return it, with places to break in words that are wider than a small window has room for
[[nodiscard]] QString foldable(const QString &text, const QFont &font);

/// A label that dots end where it has no room, unless it wraps.
class Line : public QLabel {
public:
    using QLabel::QLabel;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// A filled box with an optional hairline at one edge.
class Panel : public QWidget {
public:
    Panel(const QColor &fill, QWidget *parent);

    void setLine(Qt::Edge edge, const QColor &colour);
    /// The shadow of what stands below and nearer. \param depth in px
    void setShadeAtBottom(int depth);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_fill;
    QColor m_line;
    Qt::Edge m_edge = Qt::BottomEdge;
    int m_shade = 0;
};

/// A rounded box around wrapped text; what looks like a code in it stands out.
class Bubble : public QWidget {
public:
    Bubble(const QString &text, const QColor &fill, const QColor &border, const QColor &ink,
        QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_fill;
    QColor m_border;
};

/// The disc with a tick beside the recipient's name.
class TickDisc : public QWidget {
public:
    explicit TickDisc(QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// Text on a rounded plate.
class Pill : public QLabel {
public:
    Pill(const QString &text, const QColor &fill, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_fill;
};

}
