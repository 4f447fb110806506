// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OutputWindow.h"

namespace glimmerpane::wlroots
{

/**
 * Windows that fill an output of their own, because that is what programs can share of these
 * compositors: outputs. Where none can be made, the window is off every display.
 */
class OutputWindowsWlroots : public OutputWindows
{
public:
    /** Also removes outputs that an earlier run has left behind. Waits for the compositor. */
    explicit OutputWindowsWlroots(std::shared_ptr<OutputWindows> offscreen);

    std::expected<std::unique_ptr<OutputWindow>, Error> make(const QString &title,
                                                             QRect area) override;

private:
    const std::shared_ptr<OutputWindows> offscreen_; ///< makes windows off every display
};

} // namespace glimmerpane::wlroots
