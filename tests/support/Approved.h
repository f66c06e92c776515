#pragma once

#include "support/Pictures.h"

#include <QtCore/QDir>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <functional>

/// \brief What is seen against pictures in the folder APPROVED, which somebody looked at: whatever
/// is drawn otherwise is seen here. tests/Looks/approve takes them anew.
namespace approved {

/// Of the same version everywhere.
inline void setFont()
{
    QFont font;
    font.setFamilies({ QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans Arabic") });
    QGuiApplication::setFont(font);
}

inline constexpr int side = 5; // of a square, px
/// Of 255, the mean of a square: letters stray so far from one Qt to the next, a line that is a
/// pixel off strays further.
inline constexpr int tolerance = 16;

/// \return how far a square is from the other's, 0 to 255; of one colour in both, any difference
/// counts
inline int distance(const QImage &seen, const QImage &approved, const QRect &square)
{
    int sum = 0;
    bool flat = true;
    for (int y = square.top(); y <= square.bottom(); ++y) {
        for (int x = square.left(); x <= square.right(); ++x) {
            const QRgb a = seen.pixel(x, y);
            const QRgb b = approved.pixel(x, y);
            sum += std::max({ std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                std::abs(qBlue(a) - qBlue(b)) });
            flat &= a == seen.pixel(square.topLeft()) && b == approved.pixel(square.topLeft());
        }
    }
    const int mean = sum / (square.width() * square.height());
    return flat && mean > 2 ? mean + tolerance : mean;
}

/// \return how many squares differ, and how the first one does; nothing where none does
inline std::string strayed(const QImage &seen, const QImage &approved)
{
    if (seen.size() != approved.size())
        return difference(seen, approved);
    int count = 0;
    std::ostringstream text;
    for (int y = 0; y < seen.height(); y += side) {
        for (int x = 0; x < seen.width(); x += side) {
            const QRect square = QRect(x, y, side, side) & seen.rect();
            if (distance(seen, approved, square) > tolerance && count++ == 0)
                text << "the square from " << x << ',' << y << " is otherwise ("
                     << difference(seen.copy(square), approved.copy(square), 2) << "), of squares ";
        }
    }
    return count == 0 ? std::string() : text.str() + std::to_string(count);
}

/// Waits for it: pictures come, and what moves comes to rest.
inline void expect(const std::string &stop, const std::function<QImage()> &picture)
{
    const QString name = QString::fromStdString(stop + ".png").remove(u',').replace(u' ', u'-');
    const QString taken = qEnvironmentVariable("PICTURES"); // here, for somebody to look at
    const QString file = (taken.isEmpty() ? QStringLiteral(APPROVED) : taken) + u'/' + name;
    if (!taken.isEmpty()) {
        QTest::qWait(200);
        ASSERT_TRUE(picture().convertToFormat(QImage::Format_RGB32).save(file, nullptr, 0)) // small
            << qPrintable(file);
        return;
    }
    const QImage approved(file);
    const auto isApproved = [&] { return strayed(picture(), approved).empty(); };
    if (QTest::qWaitFor(isApproved))
        return;
    for (int i = 0; i < 12; ++i) { // a turn of the overlay, which a busy machine has no time for
        if (isApproved())
            return;
    }
    picture().save(name);
    ADD_FAILURE() << stop << ": " << strayed(picture(), approved) << "; see "
                  << qPrintable(QDir().absoluteFilePath(name)) << " and " << qPrintable(file);
}

} // namespace approved
