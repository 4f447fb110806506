// SPDX-License-Identifier: MIT
#include "platform/x11/Regions.h"

#include "platform/x11/Coordinates.h"

#include <QVarLengthArray>

#include <algorithm>
#include <iterator>
#include <span>

namespace glimmerpane::x11
{

namespace
{

constexpr int usualRectangles = 64; // no more than a frame's changes have

} // namespace

Region makeRegion(xcb_connection_t *connection, const QRegion &region)
{
    QVarLengthArray<xcb_rectangle_t, usualRectangles> rectangles;
    std::ranges::transform(region, std::back_inserter(rectangles), rectangleOf);
    const auto id = xcb_generate_id(connection);
    xcb_xfixes_create_region(connection, id, static_cast<std::uint32_t>(rectangles.size()),
                             rectangles.constData());
    return {connection, id};
}

QRegion regionOf(const xcb_xfixes_fetch_region_reply_t &reply)
{
    const std::span parts(xcb_xfixes_fetch_region_rectangles(&reply),
                          std::size_t(xcb_xfixes_fetch_region_rectangles_length(&reply)));
    QVarLengthArray<QRect, usualRectangles> rectangles;
    std::ranges::transform(parts, std::back_inserter(rectangles), [](const xcb_rectangle_t &part) {
        return QRect(part.x, part.y, part.width, part.height);
    });
    // The server's regions are sorted and coalesced as setRects() requires.
    QRegion region;
    region.setRects(rectangles.constData(), static_cast<int>(rectangles.size()));
    return region;
}

} // namespace glimmerpane::x11
