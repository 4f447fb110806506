// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <cstdint>

/**
 * The pictures of the numbered animation. They depend on size and number only, so that a reader
 * can tell which pixels every frame must have.
 */
namespace patternPainter
{

inline constexpr uint32_t phases = 8; ///< backdrops before they repeat
inline constexpr QRgb stillTone = 0xff2b3a4d;

/** Coloured bands; every pixel differs from that of the next phase. */
void drawBackdrop(QImage &picture, uint32_t phase);

/** A calm picture that does not move. */
void drawStill(QImage &picture);

/** The whole picture of one frame of the full-motion animation. */
QImage frame(QSize size, uint32_t number);

} // namespace patternPainter
