#pragma once

class QAccessibleInterface;

namespace parloquin {

/// \brief An object that says itself what it is to a screen reader.
class Describable {
public:
    virtual ~Describable() = default;
    /// \return new; the registry of interfaces owns it
    [[nodiscard]] virtual QAccessibleInterface *makeAccessible() = 0;
};

/// \brief Makes screen readers see the kit's widgets as what they are; AccessibleNode says how.
///
/// Main thread; every call after the first does nothing.
void installAccessibility();

} // namespace parloquin
