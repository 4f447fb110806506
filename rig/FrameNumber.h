// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <cstdint>
#include <optional>

/**
 * A frame's number as a row of 32 black and white blocks for machines (24 bits of number, 8 bits
 * of check, so that a torn row is not taken for a number) and as seven-segment digits for people.
 */
namespace frameNumber
{

inline constexpr int blockSize = 8; ///< pixels
inline constexpr QSize stripSize(32 * blockSize, blockSize);
inline constexpr uint32_t limit = 1U << 24; ///< numbers start again at 0 from here

/** Where draw() may write: the strip in the top-left corner and the digits below it. */
QRect drawnArea(QSize picture);

/** Draws into a 32-bit image of at least the strip's size. */
void draw(QImage &picture, uint32_t number);

/** Reads the strip; null if there is none, it is torn, or the picture was scaled. */
std::optional<uint32_t> read(const QImage &picture);

} // namespace frameNumber
