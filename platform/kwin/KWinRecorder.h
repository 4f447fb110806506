// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Displays.h"
#include "platform/pipewire/AreaStream.h"

namespace glimmerpane::kwin
{

/**
 * Fails unless KWin lets this program record, which it does without a question if an installed
 * desktop entry says so: its Exec is this program's path, and its X-KDE-Wayland-Interfaces names
 * zkde_screencast_unstable_v1. Waits for KWin.
 */
std::expected<void, Error> checkPermission();

/** Has KWin record, the pointer as part of the picture. */
class KWinRecorder : public pipewire::AreaRecorder
{
public:
    explicit KWinRecorder(std::shared_ptr<Displays> displays);

    QCoro::Task<Result> record(QRect area, bool showsCursor,
                               std::function<void(const Error &)> ended) override;

private:
    const std::shared_ptr<Displays> displays_;
};

} // namespace glimmerpane::kwin
