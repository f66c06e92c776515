#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <vector>

/// One case: how the kit stands to its floor, and how it should.
struct PictureRow {
    QString name;
    double ratio;
    double goal;
};

/// \brief The table as an SVG: a bar for the kit, a mark for its goal, a line where the floor
/// stands.
///
/// The scale is logarithmic, so that twice as long and half as long are as far from the floor.
/// \param caption what ran where, below the bars
[[nodiscard]] QByteArray drawn(const std::vector<PictureRow> &rows, const QString &caption);
