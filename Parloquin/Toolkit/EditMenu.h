#pragma once

#include "Parloquin/Toolkit/Accessibility.h"
#include "Parloquin/Toolkit/Pane.h"

#include <functional>

class QLineEdit;

namespace parloquin {

/// \brief Cut, copy and paste beside a field, as far as they lead to anything now.
///
/// A popup that deletes itself. Main thread only.
class EditMenu : public Pane, public Describable {
    Q_OBJECT
public:
    /// Opens over the field, or under it where there is no room. Selects the whole text unless a
    /// part of it is selected. Nothing opens where nothing can be done.
    /// \param byKeys its first entry has the keyboard, and rings
    static void open(QLineEdit *field, bool byKeys);

    [[nodiscard]] QAccessibleInterface *makeAccessible() override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit EditMenu(QLineEdit *field);
    void add(const QString &title, const QString &name, std::function<void()> action);
    /// \param room px, of the width
    /// \return how large it is then
    QSize arrange(int room);

    QLineEdit *m_field;
};

} // namespace parloquin
