#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <functional>
#include <vector>

class FaultTest;

/// \brief One fault that meets one call, screen or state: a row of the table.
///
/// What holds for every cell (Yardstick.h) is not said here again.
struct Cell {
    QByteArray fault; ///< as the list of faults names it
    QByteArray at; ///< the call, screen or state; with the fault the cell's name
    std::function<void(FaultTest &)> setUp; ///< before there is a container; may be empty
    std::function<void(FaultTest &)> act; ///< what the user, the host and the device then do
    QStringList outcomes; ///< "succeeded" and "failed N", as the delegate hears them
    QByteArray scene; ///< what shows in the end, see FaultTest::scene(); empty: whatever
    bool inSample = false; ///< runs with `./test` too
    bool inOwnNetwork = false; ///< see isInOwnNetwork()
};

// The table, by chapter; each a source of its own.
std::vector<Cell> serviceCells();
std::vector<Cell> lifetimeCells();
std::vector<Cell> entryCells();
std::vector<Cell> handlerCells();
std::vector<Cell> deviceCells();
