// SPDX-License-Identifier: MIT
#include "platform/x11/CursorTheme.h"

#include <array>

namespace glimmerpane::x11
{

namespace
{

/** Most themes use the first name, others the second; X's cursor font uses the third. */
std::array<const char *, 3> namesOf(Qt::CursorShape shape)
{
    switch (shape) {
    case Qt::OpenHandCursor:
        return {"openhand", "grab", "hand1"};
    case Qt::SizeVerCursor:
        return {"size_ver", "ns-resize", "sb_v_double_arrow"};
    case Qt::SizeHorCursor:
        return {"size_hor", "ew-resize", "sb_h_double_arrow"};
    case Qt::CrossCursor:
        return {"crosshair", "cross", "tcross"};
    default:
        return {"left_ptr", "default", "arrow"};
    }
}

} // namespace

CursorTheme::CursorTheme(const Connection &connection)
    : connection_(connection)
{
    auto screen = connection.screen();
    xcb_cursor_context_t *context = nullptr;
    if (xcb_cursor_context_new(connection.get(), &screen, &context) >= 0) {
        context_.reset(context);
    }
}

xcb_cursor_t CursorTheme::cursor(Qt::CursorShape shape)
{
    auto known = cursors_.find(shape);
    if (known == cursors_.end()) {
        known = cursors_.emplace(shape, load(shape)).first;
    }
    return known->second.get();
}

Cursor CursorTheme::load(Qt::CursorShape shape) const
{
    if (!context_) {
        return {};
    }
    for (const char *name : namesOf(shape)) {
        if (const auto id = xcb_cursor_load_cursor(context_.get(), name); id != XCB_NONE) {
            return {connection_, id};
        }
    }
    return {};
}

} // namespace glimmerpane::x11
