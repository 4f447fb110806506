// SPDX-License-Identifier: MIT
#pragma once

#include <spa/pod/builder.h>

#include <array>
#include <chrono>
#include <cstddef>

namespace glimmerpane::pipewire
{

/** Memory in which parameters for PipeWire are put together. */
struct ParameterMemory {
    std::array<std::byte, 4096> bytes{};
    spa_pod_builder builder{};

    ParameterMemory() { spa_pod_builder_init(&builder, bytes.data(), std::uint32_t(bytes.size())); }
};

/**
 * What a stream accepts: 32 bits a pixel, of any size, sent whenever something changes, but at most
 * once per interval. Without a modifier in it, senders use memory rather than buffers of the
 * graphics driver: those may be slow to read, and would have to be synchronised.
 */
const spa_pod *acceptedFormat(ParameterMemory &memory, std::chrono::nanoseconds minimumInterval);

/** What a stream wants to know about each buffer, and what the buffers are to be. */
std::array<const spa_pod *, 5> bufferParameters(ParameterMemory &memory);

} // namespace glimmerpane::pipewire
