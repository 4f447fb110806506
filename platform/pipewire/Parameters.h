// SPDX-License-Identifier: MIT
#pragma once

#include <spa/buffer/buffer.h>
#include <spa/pod/builder.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

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
 * once per interval. With modifiers (drm_fourcc.h), senders use buffers of the graphics driver in
 * one of these layouts; without, they use memory. See "DMA-BUF Sharing" in PipeWire's documents.
 */
const spa_pod *acceptedFormat(ParameterMemory &memory, std::chrono::nanoseconds minimumInterval,
                              std::span<const std::uint64_t> modifiers);

/** The modifier in a format that was agreed on; null if buffers are in memory. */
std::optional<std::uint64_t> modifierOf(const spa_pod &format);

/** What a stream wants to know about each buffer, and what the buffers are to be. */
std::array<const spa_pod *, 5> bufferParameters(ParameterMemory &memory, spa_data_type type);

} // namespace glimmerpane::pipewire
