#pragma once

#include "Screens/Container.h"
#include "support/Widgets.h"

/// \brief Takes a person's way through every screen of the kit, and stops at each to look.
class Walk : public ContainerTest {
public:
    /// Told the name of each picture to take, while nothing moves.
    using Stop = std::function<void(const std::string &stop)>;
    void take(const Stop &stop);
    /// The same with a service that has neither apps nor countries.
    void takeEmpty(const Stop &stop);

    /// What the container shows now, in device pixels, the caret steady, what turns at its start.
    [[nodiscard]] QImage picture() const;

protected:
    void SetUp() override;
    /// With apps and countries, as at the start.
    void answerWell();

    QSize size { 390, 844 }; ///< of the container
    QWidget *page = nullptr; ///< of a host, shown, that it stands in

private:
    void presentWaiting(const Stop &stop);
    void toTheCode(const Stop &stop);
};
