// SPDX-License-Identifier: MIT
#include "model/AreaSize.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace glimmerpane
{

namespace
{

/** Of a ratio: null unless both sides are at least a pixel and fit into `largest`. */
std::optional<QSize> fitting(double width, double height, QSize largest)
{
    const double wide = std::round(width);
    const double high = std::round(height);
    if (wide < 1 || high < 1 || wide > largest.width() || high > largest.height()) {
        return std::nullopt;
    }
    return QSize(static_cast<int>(wide), static_cast<int>(high));
}

/** Pixels; null if it does not fit into `largest`. */
std::optional<QSize> pixelsOf(const AreaSize &size, QSize now, QSize largest)
{
    if (!size.isRatio) {
        return fitting(size.width, size.height, largest);
    }
    const double ratio = size.width / size.height;
    const auto sameWidth = fitting(now.width(), now.width() / ratio, largest);
    return sameWidth ? sameWidth : fitting(now.height() * ratio, now.height(), largest);
}

/** The display under the centre, or else the one with most of the area; null for none. */
std::optional<QRect> displayOf(QRect area, const std::vector<Display> &displays)
{
    const auto share = [area](const Display &display) {
        const QRect common = display.pixels & area;
        return display.pixels.contains(area.center()) ? std::numeric_limits<qint64>::max()
                                                      : qint64(common.width()) * common.height();
    };
    const auto best = std::ranges::max_element(displays, {}, share);
    return best != displays.end() && share(*best) > 0 ? std::optional(best->pixels) : std::nullopt;
}

QRect movedInto(QRect display, QRect area)
{
    area.moveLeft(std::clamp(area.x(), display.x(), display.x() + display.width() - area.width()));
    area.moveTop(std::clamp(area.y(), display.y(), display.y() + display.height() - area.height()));
    return area;
}

} // namespace

std::optional<AreaSize> areaSizeFromText(const QString &text)
{
    static const QRegularExpression pixels(QStringLiteral("\\A([0-9]{1,6})x([0-9]{1,6})\\z"));
    static const QRegularExpression ratio(
        QStringLiteral("\\A([0-9]{1,6}(?:\\.[0-9]{1,6})?):([0-9]{1,6}(?:\\.[0-9]{1,6})?)\\z"));
    for (const auto *form : {&pixels, &ratio}) {
        const auto match = form->match(text);
        const AreaSize size{.width = match.captured(1).toDouble(),
                            .height = match.captured(2).toDouble(),
                            .isRatio = form == &ratio};
        if (size.width > 0 && size.height > 0) {
            return size;
        }
    }
    return std::nullopt;
}

std::expected<CaptureFrame, Error> sized(const CaptureFrame &area, const AreaSize &size,
                                         const Displays &desktop)
{
    const auto refused
        = [](const QString &text) { return std::unexpected(Error{.text = text, .log = {}}); };
    const auto main = desktop.mainDisplay();
    if (!main) {
        return refused(AreaSize::tr("There is no display."));
    }
    const QRect now = main->areaPixels(
        {.x = area.x, .y = area.y, .width = std::abs(area.width), .height = std::abs(area.height)});
    const bool isEmpty = now.isEmpty();
    const auto display
        = displayOf(isEmpty ? QRect(now.topLeft(), QSize(1, 1)) : now, desktop.displays());
    if (!display) {
        return refused(AreaSize::tr("The area is not on any display. Move it onto one."));
    }
    if (isEmpty && size.isRatio) {
        return refused(AreaSize::tr("The area is empty, so it has no ratio of width to height."));
    }
    const auto pixels = pixelsOf(size, now.size(), display->size());
    if (!pixels) {
        return refused(AreaSize::tr("An area of this size does not fit on its display, which has "
                                    "%1 x %2 pixels.")
                           .arg(display->width())
                           .arg(display->height()));
    }
    const QPoint corner(now.x() + (now.width() - pixels->width()) / 2,
                        now.y() + (now.height() - pixels->height()) / 2);
    const Rect points = main->areaOf(movedInto(*display, QRect(corner, *pixels)));
    return CaptureFrame{
        .x = points.x, .y = points.y, .width = points.width, .height = points.height};
}

} // namespace glimmerpane
