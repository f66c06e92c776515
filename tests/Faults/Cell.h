#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <functional>
#include <vector>

class FaultTest;
using Step = std::function<void(FaultTest &test)>;

/// \brief One fault that meets one call, screen or state: a row of the table.
///
/// What holds for every cell (Yardstick.h) is not said here again.
struct Cell {
    QByteArray fault; ///< as the list of faults names it
    QByteArray at; ///< the call, screen or state; with the fault the cell's name
    Step act; ///< what the user, the host and the device do, from before there is a container
    QStringList outcomes; ///< "succeeded" and "failed N", as the delegate hears them
    QByteArray scene; ///< what shows in the end, see FaultTest::scene(); empty: whatever
    bool inSample = false; ///< runs with `./test` too
    std::function<bool()> isHere = {}; ///< as isInOwnNetwork(); else another process has played it
};

/// What becomes of a call: an answer like any other, one without a result, none.
enum Kind { usual, empty, failed };

struct Call {
    QByteArray name;
    struct {
        QStringList outcomes;
        QByteArray scene;
    } effects[3]; ///< by kind
};
/// Those that the screens make, pictures included. (`result` is not here: no screen makes it.)
extern const std::vector<Call> calls;

// The table, by chapter; each a source of its own.
std::vector<Cell> serviceCells();
std::vector<Cell> lifetimeCells();
std::vector<Cell> entryCells();
std::vector<Cell> handlerCells();
std::vector<Cell> deviceCells();
