// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/Coordinates.h"
#include "platform/x11/ServerId.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <expected>
#include <map>

namespace glimmerpane::x11
{

/** The RENDER pixel formats in use. */
struct RenderFormats {
    xcb_render_pictformat_t screen = 0; ///< of the root's visual
    xcb_render_pictformat_t argb = 0; ///< 32 bits, premultiplied alpha
};

/** Waits for the server; fails if it cannot draw in the screen's format. */
std::expected<RenderFormats, Error> renderFormats(const Connection &connection);

/** The pixel format of each visual. Waits for the server. */
std::map<xcb_visualid_t, xcb_render_pictformat_t> visualFormats(const Connection &connection);

/** A pixmap that RENDER can draw into and from. */
struct Canvas {
    QSize size;
    Pixmap pixmap;
    Picture picture;
};

/** A new canvas has undefined content. */
Canvas makeCanvas(const Connection &connection, QSize size, std::uint8_t depth,
                  xcb_render_pictformat_t format);

/** An ARGB canvas with the pixels of a premultiplied ARGB image. */
Canvas uploadImage(const Connection &connection, const RenderFormats &formats, const QImage &image);

/** Copies a rectangle between drawables of the same depth. */
void copyArea(const Connection &connection, xcb_gcontext_t context, xcb_drawable_t from, QRect part,
              xcb_drawable_t to, QPoint at);

/** Draws a rectangle of one picture, with its transform applied, into another. */
void composite(const Connection &connection, std::uint8_t operation, const Picture &from,
               QRect fromRect, const Picture &to, QPoint toPoint);

/** The same with reduced opacity, over the existing content. */
void compositeFaded(const Connection &connection, const Picture &from, QRect fromRect,
                    double opacity, const Picture &to, QPoint toPoint);

/** A colour in RENDER's form: premultiplied, 16 bits per channel. `alpha` is from 0 to 1. */
xcb_render_color_t renderColor(const QColor &color, double alpha);

/** RENDER's transforms map the destination to the source, in 16.16 fixed point. */
xcb_render_transform_t transform(double scaleX, double scaleY, QPoint offset);

/** From now on, scaling interpolates between pixels. */
void setBilinear(const Connection &connection, const Picture &picture);

/** For drawables as deep as this one: black, without events about exposures. */
GraphicsContext makeGraphicsContext(const Connection &connection, xcb_drawable_t drawable,
                                    xcb_subwindow_mode_t subwindowMode
                                    = XCB_SUBWINDOW_MODE_CLIP_BY_CHILDREN);

} // namespace glimmerpane::x11
