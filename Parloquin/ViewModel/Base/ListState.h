#pragma once

#include <QtCore/QObject>

namespace parloquin {

/// \brief Whether a list's rows are still on their way, for what its page says while it has none.
///
/// Main thread only.
class ListState : public QObject {
    Q_OBJECT
public:
    [[nodiscard]] bool isAwaited() const { return m_awaited; }
    /// The answer is here, or none will come. Once an answer's rows are on the page, so that it
    /// never says in between that there are none.
    void settle();

Q_SIGNALS:
    void settled();

private:
    bool m_awaited = true;
};

} // namespace parloquin
