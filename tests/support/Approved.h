#pragma once

#include "support/Pictures.h"

#include <QtCore/QDir>
#include <QtGui/QFont>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <functional>

/// \brief What is seen against pictures in the folder APPROVED, which somebody looked at: whatever
/// is drawn otherwise is seen here. tests/Looks/approve takes them anew.
namespace approved {

/// Of the same version everywhere.
inline void setFont()
{
    QFont font;
    font.setFamilies({ QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans Arabic"),
        QStringLiteral("Noto Sans Symbols2") });
    QApplication::setFont(font);
}

/// Of 255, where the same draws that drew the pictures: one processor rounds otherwise than
/// another.
inline constexpr int rounding = 2;
inline constexpr int side = 5; // of a square, px
/// Of 255, the mean of a square, where another draws: letters stray so far from one Qt to the next,
/// a line that is a pixel off strays further.
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

/// What draws here, Qt, its font engine and the letters of a font: whatever it draws, it draws
/// alike.
inline QByteArray painter()
{
    QImage letters(200, 40, QImage::Format_RGB32);
    letters.fill(Qt::white);
    QFont font(QStringLiteral("Noto Sans"));
    font.setPixelSize(17);
    QPainter painter(&letters);
    painter.setFont(font);
    painter.drawText(letters.rect(), Qt::AlignCenter, QStringLiteral("Verify +47 \u062a\u062d"));
    const QByteArrayView drawn(letters.constBits(), letters.sizeInBytes());
    return qVersion() + (' ' + QString::number(qChecksum(drawn), 16).toLatin1());
}

/// Waits for it: pictures come, and what moves comes to rest.
/// \param said to a reader of the same, which stands beside the picture
inline void expect(
    const std::string &stop, const std::function<QImage()> &picture,
    const std::function<std::string()> &said = [] { return std::string(); })
{
    const QString name = QString::fromStdString(stop).remove(u',').replace(u' ', u'-');
    const QString taken = qEnvironmentVariable("PICTURES"); // here, for somebody to look at
    const QString folder = (taken.isEmpty() ? QStringLiteral(APPROVED) : taken) + u'/';
    const QString file = folder + name + QStringLiteral(".png");
    QFile takenBy( // letters are drawn otherwise between whole ratios
        folder + QStringLiteral("taken-by-%1").arg(qApp->devicePixelRatio()));
    QFile text(folder + name + QStringLiteral(".txt"));
    const auto look = [&] { return picture().convertToFormat(QImage::Format_RGB32); };
    if (!taken.isEmpty()) {
        QImage last;
        ASSERT_TRUE(QTest::qWaitFor([&] {
            QTest::qWait(200);
            const QImage before = std::exchange(last, look());
            return last == before;
        })) << qPrintable(file);
        ASSERT_TRUE(last.save(file, nullptr, 0)) << qPrintable(file); // small
        ASSERT_TRUE(takenBy.open(QIODevice::WriteOnly) && takenBy.write(painter()) > 0);
        if (const std::string now = said(); !now.empty()) {
            ASSERT_TRUE(text.open(QIODevice::WriteOnly) && text.write(now.c_str()) > 0);
        }
        return;
    }
    const QImage approved = QImage(file).convertToFormat(QImage::Format_RGB32);
    static const bool isExact = takenBy.open(QIODevice::ReadOnly) && takenBy.readAll() == painter();
    const auto stray = [&](const QImage &seen) {
        return isExact ? difference(seen, approved, rounding) : strayed(seen, approved);
    };
    const std::string told = text.open(QIODevice::ReadOnly) ? text.readAll().toStdString() : "";
    const auto isTold = [&] { return said() == told; };
    const int patience = testing::Test::HasFailure() ? 500 : 5000; // one has told already
    if (QTest::qWaitFor([&] { return stray(look()).empty() && isTold(); }, patience))
        return;
    const QImage seen = look();
    seen.save(name + QStringLiteral(".png"));
    EXPECT_EQ(stray(seen), "") << stop << "; see " << qPrintable(QDir().absoluteFilePath(name))
                               << ".png and " << qPrintable(file);
    EXPECT_TRUE(isTold()) << stop << " is told as\n" << said() << "in place of\n" << told;
}

} // namespace approved
