// SPDX-License-Identifier: MIT
#include "selection/AreaFrameLayout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace glimmerpane
{

namespace
{

constexpr double barWidth = 3; // points
constexpr double edgeWidth = 1; // around the bars, so that they are seen on their own colour
constexpr double handleLength = 48;
constexpr double handleDepth = 14;
constexpr double dotSize = 3; // of the grip, which has three
constexpr double dotDistance = 8; // from the middle of one to that of the next
constexpr Qt::GlobalColor edgeColor = Qt::white;

/** Whole pixels, and not less than one, of a length in points. */
int pixels(double points, double scale)
{
    return std::max(1, static_cast<int>(std::lround(points * scale)));
}

QRect grown(const QRect &rectangle, int margin)
{
    return rectangle.adjusted(-margin, -margin, margin, margin);
}

void addMarks(std::vector<Mark> &marks, const QRegion &region, const QColor &color)
{
    for (const QRect &part : region) {
        marks.push_back({.place = part, .color = color});
    }
}

/**
 * Preferably above, else below or at a side, in the middle of what is to be seen of the area there.
 * At the frame, or beyond all that must stay clear. Empty if there is room nowhere.
 */
QRect handlePlace(const AreaFrameScene &scene, int margin)
{
    const QRect own = grown(scene.area, margin);
    const QRect all = own.united(grown(scene.clear.boundingRect(), margin));
    const int length = pixels(handleLength, scene.scale);
    const int depth = pixels(handleDepth, scene.scale);
    const QPoint middle = (scene.desktop & scene.area).boundingRect().center();
    const int x = middle.x() - length / 2;
    const int y = middle.y() - length / 2;
    const auto above = [&](const QRect &r) { return QRect(x, r.top() - depth, length, depth); };
    const auto below = [&](const QRect &r) { return QRect(x, r.bottom() + 1, length, depth); };
    const auto left = [&](const QRect &r) { return QRect(r.left() - depth, y, depth, length); };
    const auto right = [&](const QRect &r) { return QRect(r.right() + 1, y, depth, length); };
    const std::array places{above(own), above(all), below(own), below(all),
                            left(own),  left(all),  right(own), right(all)};
    const auto *const found = std::ranges::find_if(places, [&](const QRect &place) {
        return (QRegion(place) - scene.desktop).isEmpty() && !scene.clear.intersects(place);
    });
    return found != places.end() ? *found : QRect();
}

/** In the handle's pixels. */
std::vector<Mark> gripOf(QSize handle, const AreaFrameScene &scene)
{
    const QRect ground({}, handle);
    const int edge = pixels(edgeWidth, scene.scale);
    std::vector<Mark> grip{{.place = ground, .color = edgeColor},
                           {.place = grown(ground, -edge), .color = scene.color}};
    const int size = pixels(dotSize, scene.scale);
    const int distance = pixels(dotDistance, scene.scale);
    const QPoint step
        = handle.width() > handle.height() ? QPoint(distance, 0) : QPoint(0, distance);
    const QPoint first((handle.width() - size) / 2, (handle.height() - size) / 2);
    for (const int i : {-1, 0, 1}) {
        grip.push_back({.place = {first + i * step, QSize(size, size)}, .color = edgeColor});
    }
    return grip;
}

} // namespace

MarksPicture layOutFrame(const AreaFrameScene &scene)
{
    const int bar = pixels(barWidth, scene.scale);
    const int edge = pixels(edgeWidth, scene.scale);
    const QRegion inner(grown(scene.area, bar));
    const QRegion outer(grown(scene.area, bar + edge));
    MarksPicture picture;
    addMarks(picture.bars, (outer - inner - scene.clear) & scene.desktop, edgeColor);
    addMarks(picture.bars, (inner - scene.area - scene.clear) & scene.desktop, scene.color);
    if (scene.hasHandle) {
        picture.handle = handlePlace(scene, bar + edge);
        picture.grip = gripOf(picture.handle.size(), scene);
    }
    return picture;
}

} // namespace glimmerpane
