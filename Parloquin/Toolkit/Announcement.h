#pragma once

#include "Parloquin/Toolkit/Accessibility.h"

#include <QtCore/QObject>
#include <QtCore/QString>

class QWidget;

namespace parloquin {

/// \brief Says to a screen reader what appears away from the focus, which stays where it is.
///
/// As a desktop's notification does: readers hear it once, when it is said, and find nothing of it
/// in the tree. Main thread only.
class Announcement : public QObject, public Describable {
    Q_OBJECT
public:
    /// \param place what it is about; parent
    explicit Announcement(QWidget *place);

    void say(const QString &text);
    /// What is not true any more is not worth saying.
    void withdraw();

    [[nodiscard]] QString text() const { return m_text; }
    [[nodiscard]] QAccessibleInterface *makeAccessible() override;

private:
    QString m_text;
};

} // namespace parloquin
