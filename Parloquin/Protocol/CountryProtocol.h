#pragma once

#include <QtCore/QtGlobal>

#include <memory>

namespace parloquin {

struct CountryModel;

/// \brief Receives the country that the user picked.
class CountryProtocol {
public:
    virtual ~CountryProtocol() = default;

    /// Main thread.
    virtual void setCountry(const CountryModel &country) = 0;

    /// Empty once the receiver is gone: the picker may outlive it. Lock it on the main thread only.
    [[nodiscard]] std::weak_ptr<CountryProtocol> weakCountryProtocol() const { return m_token; }

protected:
    CountryProtocol() = default;
    Q_DISABLE_COPY_MOVE(CountryProtocol)

private:
    // Owns nothing: receivers are screens, which belong to Qt parents.
    std::shared_ptr<CountryProtocol> m_token { this, [](CountryProtocol *) {} };
};

} // namespace parloquin
