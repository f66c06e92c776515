#pragma once

#include <QtCore/QtGlobal>

#include <memory>

namespace parloquin {

/// \brief A screen that its view model tells of new data.
class Updateable {
public:
    virtual ~Updateable() = default;

    virtual void rebindData() = 0;

    /// Empty once the screen is gone. Lock it on the main thread only, where screens die.
    [[nodiscard]] std::weak_ptr<Updateable> weakReference() const { return m_token; }

protected:
    Updateable() = default;
    Q_DISABLE_COPY_MOVE(Updateable)

private:
    // Owns nothing (screens belong to Qt parents): it only tells whether the screen still lives.
    std::shared_ptr<Updateable> m_token { this, [](Updateable *) {} };
};

} // namespace parloquin
