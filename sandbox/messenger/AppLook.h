#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QColor>
#include <QtGui/QPixmap>

namespace messenger {

/// How one of the stand-in apps presents itself.
struct AppLook {
    QString app;
    QString title;
    QColor colour;
    QColor ink; ///< text and glyphs on the colour

    QPixmap icon(int side, qreal ratio) const; ///< \param side px

    /// The colour thinned with white. \param share how much of it stays, 0 to 1
    QColor tint(qreal share) const;
    /// As tint(), from a greyer tone: for wide areas.
    QColor quietTint(qreal share) const;

    /// \return the look of \p app; of the first app when there is none of that name
    static AppLook of(const QString &app);
    static QStringList apps();
};

}
