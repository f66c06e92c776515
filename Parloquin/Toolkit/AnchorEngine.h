#pragma once

#include "Parloquin/Toolkit/Anchors.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace parloquin {

/// \brief Holds the rows of one root and lays out anew when anything they depend on changes.
///
/// A child of root. It lays out when root is shown or resized, and, once for all that has come by
/// then, when root turns around or texts ask for other sizes; never while its table may still be
/// growing within one call.
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
    void watch(QWidget *parent);
    [[nodiscard]] bool hasSize() const;
    void forgetRequests();

    QWidget *m_root;
    QList<Row> m_rows;
    QList<QPointer<QWidget>> m_parents; // of the widgets in rows, and root
    bool m_layingOut = false;
};

} // namespace parloquin
