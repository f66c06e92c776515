#include "Card.h"

#include "Look.h"

#include <QtGui/QPainter>

namespace demo {

Card::Card(int lineInset, QWidget *parent)
    : QWidget(parent)
    , m_lineInset(lineInset)
    , m_rows(new QVBoxLayout(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
}

void Card::addRow(QWidget *row, int minimumHeight)
{
    row->setMinimumHeight(minimumHeight);
    m_rows->addWidget(row);
}

void Card::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Look::cardLine, 1));
    painter.setBrush(Look::card);
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::cardRadius, Look::cardRadius);

    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const qreal left = rightToLeft ? 0 : m_lineInset;
    const qreal right = rightToLeft ? width() - m_lineInset : width();
    for (int i = 1; i < m_rows->count(); ++i) {
        const QWidget *row = m_rows->itemAt(i)->widget();
        if (row->isVisible())
            painter.fillRect(QRectF(left, row->y() - 1, right - left, 1), Look::cardLine);
    }
}

} // namespace demo
