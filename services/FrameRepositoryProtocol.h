// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"

#include <QFuture>

#include <optional>

namespace glimmerpane
{

/** Stores the current capture area between runs. Main thread. */
class FrameRepositoryProtocol
{
public:
    /**
     * When a saved area is written to disk. One that is superseded before then is never written.
     */
    enum class Pace {
        WhenTypingRests, ///< it may be half-typed
        AtOnce,
        BeforeReturn, ///< so that a later crash loses nothing; blocks for a short time at most
    };

    virtual ~FrameRepositoryProtocol() = default;

    /** The stored area; null if there is none or it cannot be read. */
    virtual std::optional<CaptureFrame> load() = 0;

    /** Replaces the stored area. On failure, silently keeps the previous one. */
    virtual void save(const CaptureFrame &frame, Pace pace) = 0;

    /** Writes pending changes immediately. Finishes when nothing is left to write. */
    virtual QFuture<void> allWritten() = 0;
};

} // namespace glimmerpane
