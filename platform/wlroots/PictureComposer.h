// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wlroots/OutputCapture.h"

#include <vector>

namespace glimmerpane::wlroots
{

/**
 * Puts an area's picture together where the pixels of one output are not all of it: if it lies on
 * several outputs, reaches beyond them, or if the output is rotated. One pixel for each unit of
 * window positions; black where there is no output.
 */
class PictureComposer
{
public:
    /** A new picture of an area (window positions) from the latest pictures of its parts. */
    MappedPixels compose(QRect area, const std::vector<std::unique_ptr<OutputCapture>> &parts);

private:
    std::shared_ptr<QImage> freeCanvas(QSize size);

    std::vector<std::shared_ptr<QImage>> canvases_; ///< reused when nobody holds them
};

/** Where changes of a part's pixels show in the composed picture; at least there. */
QRegion composedRegion(const OutputCapture &part, const QRegion &changes, QRect area);

} // namespace glimmerpane::wlroots
