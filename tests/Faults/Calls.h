#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <vector>

/// What becomes of a call: an answer like any other, one without a result, none.
enum Kind { usual, empty, failed };

struct Effect {
    QStringList outcomes;
    QByteArray scene;
};

struct Call {
    QByteArray name;
    Effect effects[3]; ///< by kind
};

/// Those that the screens make, pictures included. (`result` is not here: no screen makes it.)
const std::vector<Call> &calls();
