#pragma once

#include <QtWidgets/QWidget>

namespace parloquin {

/// \brief What a finger, a mouse or a key holds down before it means something.
class Holdable {
public:
    virtual ~Holdable() = default;
    /// As if the finger had strayed: what holds it now will mean nothing.
    virtual void letGo() = 0;

    /// All of them within a widget that is covered now, or leaves.
    static void letGoWithin(const QWidget &whole)
    {
        for (auto *part : whole.findChildren<QWidget *>()) {
            if (auto *held = dynamic_cast<Holdable *>(part))
                held->letGo();
        }
    }
};

} // namespace parloquin
