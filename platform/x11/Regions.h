// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/ServerId.h"

#include <QRegion>

#include <xcb/xfixes.h>

namespace glimmerpane::x11
{

/** A region in the server; the connection must have announced XFixes and outlive it. */
Region makeRegion(xcb_connection_t *connection, const QRegion &region = {});

/** The rectangles of a region in the server. */
QRegion regionOf(const xcb_xfixes_fetch_region_reply_t &reply);

} // namespace glimmerpane::x11
