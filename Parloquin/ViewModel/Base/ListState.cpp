#include "Parloquin/ViewModel/Base/ListState.h"

namespace parloquin {

void ListState::settle()
{
    if (!m_awaited)
        return;
    m_awaited = false;
    Q_EMIT settled();
}

} // namespace parloquin
