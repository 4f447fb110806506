// SPDX-License-Identifier: MIT
#include "platform/x11/ImportedBuffers.h"

#include "platform/Log.h"
#include "platform/x11/Coordinates.h"

#include <xcb/dri3.h>

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <iterator>
#include <optional>
#include <span>

namespace glimmerpane::x11
{

namespace
{

constexpr std::uint8_t bitsPerPixel = 32;

/** A layout that the driver knows by itself: DRM_FORMAT_MOD_INVALID of drm_fourcc.h. */
constexpr std::uint64_t implicitModifier = 0x00ffffffffffffff;

/** xcb gives up connections on which it is asked for what the server or the socket cannot do. */
bool takesBuffers(const Connection &connection)
{
    const auto *const extension = xcb_get_extension_data(connection.get(), &xcb_dri3_id);
    return extension != nullptr && extension->present != 0 && connection.takesFiles();
}

/** DRI3 knows modifiers from version 1.2 on. */
bool hasModifiers(const Connection &connection)
{
    if (!takesBuffers(connection)) {
        return false;
    }
    constexpr std::uint32_t major = 1;
    constexpr std::uint32_t minor = 2;
    const Reply<xcb_dri3_query_version_reply_t> version(xcb_dri3_query_version_reply(
        connection.get(), xcb_dri3_query_version(connection.get(), major, minor), nullptr));
    return version && version->major_version == major && version->minor_version >= minor;
}

/** The request for a pixmap; xcb closes the files that it sends. Null if it cannot be made. */
std::optional<xcb_void_cookie_t> request(const Connection &connection, const DmaBuffer &buffer,
                                         std::uint32_t id)
{
    if (!takesBuffers(connection)) {
        return std::nullopt;
    }
    constexpr std::size_t mostPlanes = 4;
    std::array<std::int32_t, mostPlanes> files{};
    std::array<DmaBuffer::Plane, mostPlanes> planes;
    for (std::size_t i = 0; i < buffer.planes.size(); ++i) {
        const auto &[file, stride, offset] = buffer.planes[i];
        planes[i] = {.file = FileDescriptor(fcntl(file.get(), F_DUPFD_CLOEXEC, 0)),
                     .stride = stride,
                     .offset = offset};
        if (planes[i].file.get() < 0) {
            return std::nullopt;
        }
    }
    std::ranges::transform(planes, files.begin(),
                           [](DmaBuffer::Plane &plane) { return plane.file.release(); });
    return xcb_dri3_pixmap_from_buffers_checked(
        connection.get(), id, connection.root(), static_cast<std::uint8_t>(buffer.planes.size()),
        extent(buffer.size.width()), extent(buffer.size.height()), planes[0].stride,
        planes[0].offset, planes[1].stride, planes[1].offset, planes[2].stride, planes[2].offset,
        planes[3].stride, planes[3].offset, connection.screen().root_depth, bitsPerPixel,
        buffer.modifier, files.data());
}

} // namespace

std::vector<std::uint64_t> importableModifiers(const Connection &connection)
{
    if (!hasModifiers(connection)) {
        return {};
    }
    const auto cookie = xcb_dri3_get_supported_modifiers(
        connection.get(), connection.root(), connection.screen().root_depth, bitsPerPixel);
    const Reply<xcb_dri3_get_supported_modifiers_reply_t> reply(
        xcb_dri3_get_supported_modifiers_reply(connection.get(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    const std::span forWindow(
        xcb_dri3_get_supported_modifiers_window_modifiers(reply.get()),
        static_cast<std::size_t>(
            xcb_dri3_get_supported_modifiers_window_modifiers_length(reply.get())));
    const std::span forScreen(
        xcb_dri3_get_supported_modifiers_screen_modifiers(reply.get()),
        static_cast<std::size_t>(
            xcb_dri3_get_supported_modifiers_screen_modifiers_length(reply.get())));
    std::vector<std::uint64_t> modifiers(forScreen.begin(), forScreen.end());
    std::ranges::copy_if(forWindow, std::back_inserter(modifiers), [&](std::uint64_t modifier) {
        return std::ranges::find(forScreen, modifier) == forScreen.end();
    });
    // Servers list only what is explicit; drivers without modifiers, and mutter 43, have no other.
    if (std::ranges::find(modifiers, implicitModifier) == modifiers.end()) {
        modifiers.push_back(implicitModifier);
    }
    qCInfo(platformLog, "the X server takes DMA-BUFs of %zu modifiers", modifiers.size());
    return modifiers;
}

xcb_pixmap_t ImportedBuffers::import(const Connection &connection,
                                     const std::shared_ptr<const DmaBuffer> &buffer)
{
    const auto known = std::ranges::find_if(
        imported_, [&](const Imported &each) { return each.buffer.lock() == buffer; });
    if (known != imported_.end()) {
        return known->pixmap.get();
    }
    forgetWithdrawn();
    const auto id = connection.newId();
    const auto requested = request(connection, *buffer, id);
    if (!requested) {
        return XCB_NONE;
    }
    if (const auto made = connection.check(*requested, "PixmapFromBuffers"); !made) {
        qCInfo(platformLog, "the X server does not show a DMA-BUF: %s",
               qPrintable(made.error().log));
        return XCB_NONE;
    }
    imported_.push_back({.buffer = buffer, .pixmap = Pixmap(connection, id)});
    return id;
}

void ImportedBuffers::forgetWithdrawn()
{
    std::erase_if(imported_, [](const Imported &each) { return each.buffer.expired(); });
}

} // namespace glimmerpane::x11
