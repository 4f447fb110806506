// SPDX-License-Identifier: MIT
#include "platform/x11/BackdropSource.h"

#include "platform/x11/Events.h"
#include "platform/x11/Regions.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace glimmerpane::x11
{

BackdropSource::BackdropSource(const Connection &connection, const Extensions &extensions,
                               const RenderFormats &formats, xcb_window_t top)
    : connection_(connection)
    , damageEvent_(extensions.firstDamageEvent)
    , top_(top)
    , formats_(visualFormats(connection))
    , background_(connection, formats)
{
    readStack();
    changes_ = {};
}

void BackdropSource::note(const xcb_generic_event_t &event)
{
    const int type = typeOf(event);
    if (type == damageEvent_ + XCB_DAMAGE_NOTIFY) {
        const auto &damage = eventAs<xcb_damage_notify_event_t>(event);
        for (Layer &layer : layers_) {
            layer.isDamaged = layer.isDamaged || layer.window.id == damage.drawable;
        }
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto &change = eventAs<xcb_property_notify_event_t>(event);
        if (background_.isNamedBy(change.atom)) {
            isBackgroundOld_ = true;
            isStackOld_ = true;
        }
    } else {
        noteStructure(event);
    }
}

void BackdropSource::noteStructure(const xcb_generic_event_t &event)
{
    // These events start with the same fields: the window notified and the window concerned.
    const auto &change = eventAs<xcb_configure_notify_event_t>(event);
    switch (typeOf(event)) {
    case XCB_MAP_NOTIFY:
        if (change.window != top_) {
            // Immediately, before something covers it and its pixels are lost.
            redirect(change.window);
            isStackOld_ = true;
        }
        break;
    case XCB_UNMAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        if (redirections_.erase(change.window) > 0) {
            isStackOld_ = true;
        }
        break;
    case XCB_CONFIGURE_NOTIFY:
        if (change.window != top_) {
            isStackOld_ = isStackOld_ || redirections_.contains(change.window);
        } else if (std::exchange(belowTop_, change.above_sibling) != change.above_sibling) {
            isStackOld_ = true;
        }
        break;
    case XCB_CIRCULATE_NOTIFY:
        isStackOld_ = true;
        break;
    default:
        break;
    }
}

void BackdropSource::redirect(xcb_window_t window)
{
    if (redirections_.try_emplace(window, connection_, window).second) {
        xcb_composite_redirect_window(connection_.get(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
}

bool BackdropSource::mayHaveChanged(QRect area) const
{
    return isStackOld_ || changes_.intersects(area)
        || std::ranges::any_of(layers_, [area](const Layer &layer) {
               return layer.isDamaged && layer.visible.intersects(area);
           });
}

QRegion BackdropSource::takeChanges(QRect area)
{
    if (isStackOld_) {
        readStack();
    }
    collectDamage(area);
    const QRegion taken = changes_ & area;
    changes_ -= area;
    return taken;
}

void BackdropSource::readStack()
{
    isStackOld_ = false;
    const std::vector<StackedWindow> windows = windowsBelow(connection_, top_);
    // Layers that are equal at both ends have not changed.
    auto [oldFirst, newFirst] = std::ranges::mismatch(layers_, windows, {}, &Layer::window);
    auto oldRest = std::ranges::subrange(oldFirst, layers_.end()) | std::views::reverse;
    auto newRest = std::ranges::subrange(newFirst, windows.end()) | std::views::reverse;
    auto [oldLast, newLast] = std::ranges::mismatch(oldRest, newRest, {}, &Layer::window);
    for (; oldFirst != oldLast.base(); ++oldFirst) {
        changes_ += oldFirst->window.shape;
    }
    for (; newFirst != newLast.base(); ++newFirst) {
        changes_ += newFirst->shape;
    }
    std::vector<Layer> layers;
    layers.reserve(windows.size());
    for (const StackedWindow &window : windows) {
        layers.push_back(layerOf(window));
    }
    layers_ = std::move(layers);
    findVisible();
    if (std::exchange(isBackgroundOld_, false)) {
        background_.renew(rootVisible_);
        changes_ += rootVisible_;
    }
}

/** The existing layer, if the window is known. */
BackdropSource::Layer BackdropSource::layerOf(const StackedWindow &window)
{
    const auto known
        = std::ranges::find(layers_, window.id, [](const Layer &layer) { return layer.window.id; });
    if (known != layers_.end()) {
        Layer layer = std::move(*known);
        layer.window = window;
        return layer;
    }
    redirect(window.id);
    Layer layer{.window = window,
                .visible = {},
                .picture = Picture(connection_, connection_.newId()),
                .damage = Damage(connection_, connection_.newId())};
    const auto format = formats_.find(window.visual);
    const std::uint32_t inferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
    xcb_render_create_picture(connection_.get(), layer.picture.get(), window.id,
                              format != formats_.end() ? format->second : 0,
                              XCB_RENDER_CP_SUBWINDOW_MODE, &inferiors);
    // The current content is used; the event about this change still arrives.
    xcb_damage_create(connection_.get(), layer.damage.get(), window.id,
                      XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_damage_subtract(connection_.get(), layer.damage.get(), XCB_NONE, XCB_NONE);
    return layer;
}

void BackdropSource::findVisible()
{
    QRegion open = connection_.rootRectangle();
    for (Layer &layer : layers_ | std::views::reverse) {
        layer.visible = layer.window.shape & open;
        if (layer.window.isOpaque()) {
            open -= layer.visible;
        }
    }
    rootVisible_ = open;
}

void BackdropSource::collectDamage(QRect area)
{
    std::vector<std::pair<Layer *, xcb_xfixes_fetch_region_cookie_t>> asked;
    Region region;
    for (Layer &layer : layers_) {
        if (!layer.isDamaged || !layer.visible.intersects(area)) {
            continue;
        }
        layer.isDamaged = false;
        if (asked.empty()) {
            region = makeRegion(connection_.get());
        }
        xcb_damage_subtract(connection_.get(), layer.damage.get(), XCB_NONE, region.get());
        asked.emplace_back(&layer, xcb_xfixes_fetch_region(connection_.get(), region.get()));
    }
    for (const auto &[layer, cookie] : asked) {
        const Reply<xcb_xfixes_fetch_region_reply_t> reply(
            xcb_xfixes_fetch_region_reply(connection_.get(), cookie, nullptr));
        if (reply) {
            changes_ += regionOf(*reply).translated(layer->window.origin) & layer->visible;
        }
    }
}

void BackdropSource::draw(const Canvas &canvas, QRect area) const
{
    const auto drawParts
        = [&](const Picture &from, QPoint origin, const QRegion &parts, std::uint8_t operation) {
              for (const QRect &part : parts &area) {
                  composite(connection_, operation, from, part.translated(-origin), canvas.picture,
                            part.topLeft() - area.topLeft());
              }
          };
    drawParts(background_.picture(), {}, rootVisible_, XCB_RENDER_PICT_OP_SRC);
    for (const Layer &layer : layers_) {
        const StackedWindow &window = layer.window;
        if (window.opacity < 1) {
            for (const QRect &part : layer.visible &area) {
                compositeFaded(connection_, layer.picture, part.translated(-window.origin),
                               window.opacity, canvas.picture, part.topLeft() - area.topLeft());
            }
        } else {
            drawParts(layer.picture, window.origin, layer.visible,
                      window.hasAlpha ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC);
        }
    }
}

} // namespace glimmerpane::x11
