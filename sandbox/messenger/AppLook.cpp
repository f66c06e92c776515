#include "sandbox/messenger/AppLook.h"

#include <QtCore/QList>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

#include <algorithm>

namespace messenger {
namespace {
const QList<AppLook> &looks()
{
    static const QList<AppLook> all {
        { QStringLiteral("parlo"), QStringLiteral("Parlo"), QColor(0x1b, 0x7a, 0x4b), Qt::white },
        { QStringLiteral("kite"), QStringLiteral("Kite"), QColor(0x15, 0x65, 0xc0), Qt::white },
        { QStringLiteral("murmur"), QStringLiteral("Murmur"), QColor(0x6a, 0x45, 0xc2), Qt::white },
        { QStringLiteral("wrenly"), QStringLiteral("Wrenly"), QColor(0xff, 0xd2, 0x4a),
            QColor(0x2b, 0x21, 0x00) },
        { QStringLiteral("hushbell"), QStringLiteral("Hushbell"), QColor(0x00, 0x00, 0xff),
            Qt::white },
    };
    return all;
}

QColor thinned(const QColor &colour, qreal share)
{
    const auto thin = [share](int channel) { return qRound(channel * share + 255 * (1 - share)); };
    return { thin(colour.red()), thin(colour.green()), thin(colour.blue()) };
}
}

QPixmap AppLook::icon(int side, qreal ratio) const
{
    QPixmap picture(QSize(side, side) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    // By no QIcon of the file: that needs a plugin, which may be a package of its own.
    QSvgRenderer(QStringLiteral(":/messenger/%1.svg").arg(app))
        .render(&painter, QRectF(0, 0, side, side));
    return picture;
}

QColor AppLook::tint(qreal share) const { return thinned(colour, share); }

QColor AppLook::quietTint(qreal share) const
{
    const auto grey = qGray(colour.rgb());
    return thinned(
        QColor((colour.red() + grey) / 2, (colour.green() + grey) / 2, (colour.blue() + grey) / 2),
        share);
}

AppLook AppLook::of(const QString &app)
{
    const auto found = std::find_if(
        looks().begin(), looks().end(), [&app](const AppLook &look) { return look.app == app; });
    return found == looks().end() ? looks().first() : *found;
}

QStringList AppLook::apps()
{
    QStringList names;
    for (const auto &look : looks())
        names.append(look.app);
    return names;
}

}
