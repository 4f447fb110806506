// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"

#include <QFuture>

#include <optional>

namespace glimmerpane
{

/** Keeps the one current capture area from one run to the next. Main thread. */
class FrameRepositoryProtocol
{
public:
    /** When a saved area goes to the disk. One that is superseded before is never written. */
    enum class Pace {
        WhenTypingRests, ///< it may be half a number
        AtOnce,
        BeforeReturn, ///< so that a crash right after loses nothing; waits for a moment at most
    };

    virtual ~FrameRepositoryProtocol() = default;

    /** The stored area, or nothing where none is stored or it cannot be read. */
    virtual std::optional<CaptureFrame> load() = 0;

    /** Replaces the stored area. A failure keeps the earlier one and is silent. */
    virtual void save(const CaptureFrame &frame, Pace pace) = 0;

    /** Writes at once what still waits. Finished when nothing is left to write. */
    virtual QFuture<void> allWritten() = 0;
};

} // namespace glimmerpane
