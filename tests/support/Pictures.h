#pragma once

#include <QtCore/QCoreApplication>
#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtGui/QScreen>
#include <QtWidgets/QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

/// \return nothing where both are the same, else how the first pixel differs that does by more than
/// this much of a colour, and how many do
inline std::string difference(const QImage &seen, const QImage &expected, int rounding = 0)
{
    std::ostringstream text;
    if (seen == expected)
        return {};
    if (seen.size() != expected.size()) {
        text << seen.width() << " x " << seen.height() << ", not " << expected.width() << " x "
             << expected.height();
        return text.str();
    }
    int count = 0;
    for (int y = 0; y < seen.height(); ++y) {
        for (int x = 0; x < seen.width(); ++x) {
            const QColor color = seen.pixelColor(x, y);
            const QColor other = expected.pixelColor(x, y);
            const int off = std::max({ std::abs(color.red() - other.red()),
                std::abs(color.green() - other.green()), std::abs(color.blue() - other.blue()),
                std::abs(color.alpha() - other.alpha()) });
            if (off > rounding && count++ == 0)
                text << "first at " << x << ',' << y << ": " << color.name().toStdString()
                     << ", not " << other.name().toStdString() << ", of pixels ";
        }
    }
    return count == 0 ? std::string() : text.str() + std::to_string(count);
}

/// Around the pixels that are such.
inline QRect around(const QImage &image, bool (*isSuch)(QRgb))
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            found |= isSuch(image.pixel(x, y)) ? QRect(x, y, 1, 1) : QRect();
    }
    EXPECT_FALSE(found.isEmpty()) << "nothing is drawn";
    return found;
}

/// \brief What stands on the screen: grab() draws anew, also what nobody asked to be drawn again.
inline QImage onScreen(QWidget &widget)
{
    QCoreApplication::sendPostedEvents(); // layouts and drawing that are still to be done
    const QWidget *const window = widget.window();
    const QRect place(widget.mapTo(window, QPoint()), widget.size());
    return window->devicePixelRatio() > 1 // which the screen of tests cannot tell
        ? widget.grab().toImage()
        : window->screen()
              ->grabWindow(window->winId(), place.x(), place.y(), place.width(), place.height())
              .toImage();
}
