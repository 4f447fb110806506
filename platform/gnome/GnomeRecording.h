// SPDX-License-Identifier: MIT
#pragma once

#include "platform/pipewire/AreaStream.h"

namespace glimmerpane::gnome
{

/** Whether this session has GNOME's screen-cast service. Waits for the bus. */
bool isScreenCastThere();

/** The shell's, such as 43; 0 if it does not say. Waits for the shell, but not long. */
int majorVersion();

/**
 * Has the session's own shell record, which shows that it does and lets the user stop it. No
 * question is asked.
 *
 * The shell counts in its stage's units, from the top-left corner of all monitors. Those are the
 * pixels of Xwayland's root window, or from version 47 on a whole number of them where a monitor is
 * scaled. Measured under mutter 43 and 48 with two monitors, an area on both, at scale 2, and at
 * scale 2 by the stage (scale-monitor-framebuffer), where the pictures are twice as large as the
 * area in Xwayland's pixels: they are exact.
 */
class GnomeRecorder : public pipewire::AreaRecorder
{
public:
    explicit GnomeRecorder(std::shared_ptr<Displays> displays);

    QCoro::Task<Result> record(QRect area, bool showsCursor,
                               std::function<void(const Error &)> ended) override;

private:
    const std::shared_ptr<Displays> displays_;
};

} // namespace glimmerpane::gnome
