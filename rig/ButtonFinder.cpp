// SPDX-License-Identifier: MIT
#include "rig/ButtonFinder.h"

#include <QColor>

namespace glimmerpane::testing
{

namespace
{

constexpr int smallestWidth = 100; ///< coloured pixels in a row, the label's not counted
constexpr int smallestHeight = 20;

bool hasColor(QRgb pixel, ButtonColor color)
{
    const QColor value(pixel);
    if (value.hsvSaturation() < 110 || value.value() < 110) {
        return false;
    }
    const int hue = value.hsvHue();
    return color == ButtonColor::Accent ? hue >= 190 && hue <= 260 : hue >= 340 || hue <= 15;
}

struct Row {
    int count = 0; ///< pixels of the colour
    int middle = 0; ///< their mean x
};

Row rowOf(const QImage &window, int y, ButtonColor color)
{
    Row row;
    int64_t sum = 0;
    for (int x = 0; x < window.width(); ++x) {
        if (!hasColor(window.pixel(x, y), color)) {
            continue;
        }
        ++row.count;
        sum += x;
    }
    row.middle = row.count > 0 ? static_cast<int>(sum / row.count) : 0;
    return row;
}

} // namespace

std::optional<QPoint> findButton(const QImage &window, ButtonColor color)
{
    int height = 0;
    int middle = 0;
    for (int y = 0; y <= window.height(); ++y) {
        const Row row = y < window.height() ? rowOf(window, y, color) : Row();
        if (row.count >= smallestWidth) {
            ++height;
            middle = row.middle;
        } else {
            if (height >= smallestHeight) {
                return QPoint(middle, y - height / 2);
            }
            height = 0;
        }
    }
    return std::nullopt;
}

} // namespace glimmerpane::testing
