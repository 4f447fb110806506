// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/ServerId.h"

#include <Qt>

#include <xcb/xcb_cursor.h>

#include <map>
#include <memory>

namespace glimmerpane::x11
{

/** The user's cursors. Each is loaded on first use. */
class CursorTheme
{
public:
    /** The connection must outlive this object. */
    explicit CursorTheme(const Connection &connection);

    /** XCB_NONE if neither the theme nor the server has such a cursor. */
    xcb_cursor_t cursor(Qt::CursorShape shape);

private:
    struct FreeContext {
        void operator()(xcb_cursor_context_t *context) const { xcb_cursor_context_free(context); }
    };

    Cursor load(Qt::CursorShape shape) const;

    const Connection &connection_;
    std::unique_ptr<xcb_cursor_context_t, FreeContext> context_;
    std::map<Qt::CursorShape, Cursor> cursors_;
};

} // namespace glimmerpane::x11
