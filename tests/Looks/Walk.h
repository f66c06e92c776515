#pragma once

#include "Screens/Container.h"

#include <QtGui/QImage>

#include <functional>

/// \brief Takes a person's way through every screen of the kit, and stops at each to look.
class Walk : public ContainerTest {
public:
    /// \param stop told the name of each picture to take, while nothing moves
    void take(const std::function<void(const std::string &stop)> &stop);

    /// What the container shows now, the caret steady, in device pixels.
    [[nodiscard]] QImage picture() const;

protected:
    void SetUp() override;

private:
    void toTheCode(const std::function<void(const std::string &stop)> &stop);
};

/// \return nothing where both are the same, else how many pixels differ, and how the first does
std::string difference(const QImage &seen, const QImage &expected);
