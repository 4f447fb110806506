// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"

#include <optional>

namespace glimmerpane
{

/** Keeps the one current capture area from one run to the next. Main thread. */
class FrameRepositoryProtocol
{
public:
    virtual ~FrameRepositoryProtocol() = default;

    /** The stored area, or nothing where none is stored or it cannot be read. */
    virtual std::optional<CaptureFrame> load() = 0;

    /** Replaces the stored area. A failure keeps the earlier one and is silent. */
    virtual void save(const CaptureFrame &frame) = 0;
};

} // namespace glimmerpane
