// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Displays.h"
#include "services/CaptureFrame.h"
#include "services/Error.h"

#include <QCoreApplication>
#include <QString>

#include <expected>
#include <optional>

namespace glimmerpane
{

/** A size that an area is to get. */
struct AreaSize {
    double width = 0;
    double height = 0;
    bool isRatio = false; ///< only width : height counts; otherwise both are whole pixels

    friend bool operator==(const AreaSize &, const AreaSize &) = default;

    Q_DECLARE_TR_FUNCTIONS(glimmerpane::AreaSize)
};

/** Parses WIDTHxHEIGHT (whole numbers) or WIDTH:HEIGHT, both positive. Null for anything else. */
std::optional<AreaSize> areaSizeFromText(const QString &text);

/**
 * The area with this size and the same centre, or as near to it as the display under the centre
 * allows. For a ratio, the area keeps its width if the height then fits on that display, otherwise
 * its height. The error says why there is no such area.
 */
std::expected<CaptureFrame, Error> sized(const CaptureFrame &area, const AreaSize &size,
                                         const Displays &desktop);

} // namespace glimmerpane
