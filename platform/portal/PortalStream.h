// SPDX-License-Identifier: MIT
#pragma once

#include "platform/pipewire/RecordedStream.h"
#include "platform/portal/PortalGrant.h"

#include <optional>

namespace glimmerpane::portal
{

/**
 * A capture stream of an area of the monitor that the user has granted. When the monitor's mode
 * changes, it continues with the same distance from the monitor's top-left corner.
 */
class PortalStream final : public pipewire::RecordedStream
{
    Q_OBJECT

public:
    /** `display` is the granted monitor, desktop pixels. Without a grant the start fails. */
    PortalStream(std::unique_ptr<PortalGrant> grant, QRect display, const ContentFilter &filter,
                 const StreamConfiguration &configuration, pipewire::StreamEnvironment environment);
    ~PortalStream() override;

    /** Only on the same monitor. */
    bool move(const Rect &area) override;

private:
    QCoro::Task<Result> begin() override;
    void release() override;

    const QRect display_; ///< desktop pixels
    const MainDisplay main_;
    const QRect area_; ///< at the start, desktop pixels
    const std::chrono::nanoseconds minimumFrameInterval_;
    std::unique_ptr<PortalGrant> grant_;
    std::optional<BusOwnerWatch> portal_;
};

} // namespace glimmerpane::portal
