#pragma once

#include <QtCore/QString>

#include <memory>
#include <optional>

namespace parloquin {

/// \brief Knows the country of the SIM, when there is one.
///
/// Main thread only; never waits: a modem that has not answered yet is no modem.
class Telephony {
public:
    static Telephony &shared();
    ~Telephony();
    Q_DISABLE_COPY_MOVE(Telephony)

    /// \brief Starts asking the modem service; repeated calls ask again. Returns at once.
    void ask();

    /// \return ISO 3166-1 alpha-2 code of the SIM's operator in lower case; empty while unknown
    [[nodiscard]] std::optional<QString> isoCountryCode() const;

private:
    Telephony();

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace parloquin
