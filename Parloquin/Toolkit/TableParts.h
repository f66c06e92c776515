#pragma once

#include "Parloquin/Toolkit/Label.h"

#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <vector>

namespace parloquin {

/// \brief The title over a table's section.
class TableHeader : public Label {
    Q_OBJECT
public:
    explicit TableHeader(QWidget *table);

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// \brief What the stuck header throws on the rows that slide under it.
class TableShadow : public Pane {
    Q_OBJECT
public:
    static constexpr int reach = 4; // px

    explicit TableShadow(QWidget *table);

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// \brief The letters beside a table: one tap or a drag along them goes to a section.
class TableIndex : public Pane {
    Q_OBJECT
    Q_PROPERTY(QString text READ text)
public:
    static constexpr int stripWidth = 24; // px

    explicit TableIndex(QWidget *table);

    void setLetters(const QStringList &letters);
    /// All letters, one a line.
    [[nodiscard]] QString text() const;

Q_SIGNALS:
    void chosen(int letter);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    struct Pitch {
        qreal height = 20; // px a drawn letter
        int step = 1; // letters a drawn one stands for
        qreal top = 0;
    };
    [[nodiscard]] Pitch pitch() const;
    void choose(const QPointF &position);

    Typeface m_face;
    QStringList m_letters;
    std::vector<KeptTextBlock> m_drawn;
    int m_chosen = -1;
};

/// \brief Shows for a moment how far a table has scrolled.
class TableThumb : public Pane {
    Q_OBJECT
public:
    explicit TableThumb(QWidget *table);

    /// \param offset, content px scrolled, px in all
    void showFor(int offset, int content);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTimer m_timer { this };
};

} // namespace parloquin
