#pragma once

#include "Parloquin/Toolkit/Anchors.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace parloquin {

/// \brief Holds the rows of one root and lays out anew when anything they depend on changes.
///
/// A child of root. It lays out when root is shown or resized, turns around, or when a text asks
/// for another size; never while its table may still be growing within one call.
class AnchorEngine : public QObject {
    Q_OBJECT
public:
    /// The engine of root, made on first use.
    static AnchorEngine &of(QWidget *root);

    void add(const Constraint &row);
    void layOut();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row {
        Constraint constraint;
        QPointer<QWidget> left;
        QPointer<QWidget> right;
    };

    explicit AnchorEngine(QWidget *root);
    void watch(QWidget *item);

    QWidget *m_root;
    QList<Row> m_rows;
    bool m_layingOut = false;
};

} // namespace parloquin
