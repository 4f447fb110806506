// SPDX-License-Identifier: MIT
#include "rig/FrameNumber.h"

#include <algorithm>
#include <array>

namespace frameNumber
{

namespace
{

constexpr QRgb black = 0xff000000U;
constexpr QRgb white = 0xffffffffU;
constexpr int digitCount = 8;
constexpr int margin = 8;

uint32_t withCheck(uint32_t number)
{
    number &= limit - 1;
    const uint32_t check = ((number * 2654435761U) >> 24) ^ 0xa5U;
    return number << 8 | check;
}

void fill(QImage &picture, const QRect &rectangle, QRgb color)
{
    const QRect area = rectangle & picture.rect();
    for (int y = area.top(); y < area.top() + area.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        std::fill_n(line + area.left(), area.width(), color);
    }
}

struct DigitLayout {
    QSize digit;
    int stroke;
    int pitch;
};

DigitLayout layoutFor(QSize picture)
{
    const int height = std::clamp(picture.height() / 6, 14, 84);
    const int stroke = std::max(2, height / 9);
    const QSize digit(height / 2, height);
    return {.digit = digit, .stroke = stroke, .pitch = digit.width() + 2 * stroke};
}

/** Segments: top, top right, bottom right, bottom, bottom left, top left, middle. */
void drawDigit(QImage &picture, QPoint at, const DigitLayout &layout, uint32_t digit)
{
    static constexpr std::array<uint8_t, 10> lit{0x3f, 0x06, 0x5b, 0x4f, 0x66,
                                                 0x6d, 0x7d, 0x07, 0x7f, 0x6f};
    const int width = layout.digit.width();
    const int height = layout.digit.height();
    const int stroke = layout.stroke;
    const int half = height / 2;
    const std::array<QRect, 7> segments{QRect(0, 0, width, stroke),
                                        QRect(width - stroke, 0, stroke, half),
                                        QRect(width - stroke, half, stroke, height - half),
                                        QRect(0, height - stroke, width, stroke),
                                        QRect(0, half, stroke, height - half),
                                        QRect(0, 0, stroke, half),
                                        QRect(0, half - stroke / 2, width, stroke)};
    for (size_t i = 0; i < segments.size(); ++i) {
        if (lit[digit] >> i & 1U) {
            fill(picture, segments[i].translated(at), white);
        }
    }
}

} // namespace

QRect drawnArea(QSize picture)
{
    const DigitLayout layout = layoutFor(picture);
    const QRect digits(0, stripSize.height(), digitCount * layout.pitch + 2 * margin,
                       layout.digit.height() + 2 * margin);
    return (QRect(QPoint(), stripSize) | digits) & QRect(QPoint(), picture);
}

void draw(QImage &picture, uint32_t number)
{
    const DigitLayout layout = layoutFor(picture.size());
    fill(picture, drawnArea(picture.size()), black);
    const uint32_t bits = withCheck(number);
    for (int block = 0; block < 32; ++block) {
        if (bits >> (31 - block) & 1U) {
            fill(picture, QRect(block * blockSize, 0, blockSize, blockSize), white);
        }
    }
    uint32_t rest = number % limit;
    for (int place = digitCount - 1; place >= 0; --place, rest /= 10) {
        const QPoint at(margin + place * layout.pitch, stripSize.height() + margin);
        drawDigit(picture, at, layout, rest % 10);
    }
}

std::optional<uint32_t> read(const QImage &picture)
{
    if (!picture.rect().contains(QRect(QPoint(), stripSize))) {
        return std::nullopt;
    }
    uint32_t bits = 0;
    for (int block = 0; block < 32; ++block) {
        const QPoint middle(block * blockSize + blockSize / 2, blockSize / 2);
        const int level = qGray(picture.pixel(middle));
        if (level > 64 && level < 192) {
            return std::nullopt;
        }
        bits = bits << 1 | (level >= 192 ? 1U : 0U);
    }
    const uint32_t number = bits >> 8;
    return withCheck(number) == bits ? std::optional(number) : std::nullopt;
}

} // namespace frameNumber
