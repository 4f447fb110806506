// SPDX-License-Identifier: MIT
#include "rig/PatternPainter.h"

#include "rig/FrameNumber.h"

namespace patternPainter
{

namespace
{

template<typename Color>
void paint(QImage &picture, Color color)
{
    for (int y = 0; y < picture.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            line[x] = color(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
        }
    }
}

} // namespace

void drawBackdrop(QImage &picture, uint32_t phase)
{
    const uint32_t shift = phase % phases * (256 / phases);
    paint(picture, [shift](uint32_t x, uint32_t y) {
        const uint32_t red = (x / 2 + shift) & 0xff;
        const uint32_t green = (y / 2 + shift) & 0xff;
        const uint32_t blue = ((x + y) / 4 + shift) & 0xff;
        return 0xff000000U | red << 16 | green << 8 | blue;
    });
}

void drawStill(QImage &picture)
{
    paint(picture, [](uint32_t x, uint32_t y) {
        const uint32_t checker = (x / 40 + y / 40) % 2 * 0x080808U;
        return stillTone + checker;
    });
}

QImage frame(QSize size, uint32_t number)
{
    QImage picture(size, QImage::Format_RGB32);
    drawBackdrop(picture, number);
    frameNumber::draw(picture, number);
    return picture;
}

} // namespace patternPainter
