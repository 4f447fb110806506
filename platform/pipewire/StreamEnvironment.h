// SPDX-License-Identifier: MIT
#pragma once

#include <QThreadPool>

#include <cstdint>
#include <memory>
#include <vector>

namespace glimmerpane::pipewire
{

/** What all streams of a screen have in common. */
struct StreamEnvironment {
    std::vector<std::uint64_t> modifiers; ///< see VideoNode
    /** Waits for threads that have been told to stop. Its destructor waits for them. */
    std::shared_ptr<QThreadPool> background = std::make_shared<QThreadPool>();
};

} // namespace glimmerpane::pipewire
