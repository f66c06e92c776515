#pragma once

#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

namespace demo {

/// \brief A white card of rows with lines between them.
class Card : public QWidget {
    Q_OBJECT
public:
    /// \param lineInset where the lines between the rows begin, px from the leading edge
    explicit Card(int lineInset, QWidget *parent = nullptr);

    /// \param row adopted
    void addRow(QWidget *row, int minimumHeight);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_lineInset;
    QVBoxLayout *m_rows;
};

} // namespace demo
