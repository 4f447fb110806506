// SPDX-License-Identifier: MIT
#include "platform/pipewire/Parameters.h"

#include <spa/buffer/buffer.h>
#include <spa/buffer/meta.h>
#include <spa/param/param.h>
#include <spa/param/video/format-utils.h>

namespace glimmerpane::pipewire
{

namespace
{

constexpr int mostDamageRectangles = 16;
constexpr int usualBuffers
    = 8; // one is being drawn, one read, one kept; a drawer without one skips
constexpr int fewestBuffers = 3;
constexpr int mostBuffers = 16;

/** The size of the metadata with a pointer image that has sides of this many pixels. */
constexpr int pointerSize(int side)
{
    return static_cast<int>(sizeof(spa_meta_cursor) + sizeof(spa_meta_bitmap)) + side * side * 4;
}

const spa_pod *wantedMetadata(spa_pod_builder &builder, spa_meta_type type, std::size_t size)
{
    return static_cast<const spa_pod *>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta, SPA_PARAM_META_type, SPA_POD_Id(type),
        SPA_PARAM_META_size, SPA_POD_Int(static_cast<int>(size))));
}

const spa_pod *wantedMetadata(spa_pod_builder &builder, spa_meta_type type, int usual, int least,
                              int most)
{
    return static_cast<const spa_pod *>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta, SPA_PARAM_META_type, SPA_POD_Id(type),
        SPA_PARAM_META_size, SPA_POD_CHOICE_RANGE_Int(usual, least, most)));
}

} // namespace

const spa_pod *acceptedFormat(ParameterMemory &memory, std::chrono::nanoseconds minimumInterval,
                              std::span<const std::uint64_t> modifiers)
{
    const spa_rectangle usual{1280, 720};
    const spa_rectangle least{1, 1};
    const spa_rectangle most{32767, 32767};
    const spa_fraction whenChanged{0, 1};
    const auto perSecond = std::chrono::nanoseconds(std::chrono::seconds(1)) / minimumInterval;
    const spa_fraction mostOften{static_cast<std::uint32_t>(perSecond), 1};
    const spa_fraction leastOften{1, 1};
    spa_pod_builder *const builder = &memory.builder;
    spa_pod_frame object;
    spa_pod_builder_push_object(builder, &object, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat);
    spa_pod_builder_add(
        builder, SPA_FORMAT_mediaType, SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype,
        SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw), SPA_FORMAT_VIDEO_format,
        SPA_POD_CHOICE_ENUM_Id(3, SPA_VIDEO_FORMAT_BGRx, SPA_VIDEO_FORMAT_BGRx,
                               SPA_VIDEO_FORMAT_BGRA),
        SPA_FORMAT_VIDEO_size, SPA_POD_CHOICE_RANGE_Rectangle(&usual, &least, &most),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&whenChanged), SPA_FORMAT_VIDEO_maxFramerate,
        SPA_POD_CHOICE_RANGE_Fraction(&mostOften, &leastOften, &mostOften), 0);
    if (!modifiers.empty()) {
        // The sender finds out which of them it can make.
        spa_pod_builder_prop(builder, SPA_FORMAT_VIDEO_modifier,
                             SPA_POD_PROP_FLAG_MANDATORY | SPA_POD_PROP_FLAG_DONT_FIXATE);
        spa_pod_frame choice;
        spa_pod_builder_push_choice(builder, &choice, SPA_CHOICE_Enum, 0);
        spa_pod_builder_long(builder, static_cast<std::int64_t>(modifiers.front())); // preferred
        for (const std::uint64_t modifier : modifiers) {
            spa_pod_builder_long(builder, static_cast<std::int64_t>(modifier));
        }
        spa_pod_builder_pop(builder, &choice);
    }
    return static_cast<const spa_pod *>(spa_pod_builder_pop(builder, &object));
}

std::optional<std::uint64_t> modifierOf(const spa_pod &format)
{
    const spa_pod_prop *const modifier
        = spa_pod_find_prop(&format, nullptr, SPA_FORMAT_VIDEO_modifier);
    spa_video_info_raw info{};
    return modifier != nullptr && spa_format_video_raw_parse(&format, &info) >= 0
        ? std::optional(static_cast<std::uint64_t>(info.modifier))
        : std::nullopt;
}

std::array<const spa_pod *, 5> bufferParameters(ParameterMemory &memory, spa_data_type type)
{
    constexpr int region = sizeof(spa_meta_region);
    spa_pod_builder &builder = memory.builder;
    return {
        static_cast<const spa_pod *>(spa_pod_builder_add_object(
            &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
            SPA_POD_CHOICE_RANGE_Int(usualBuffers, fewestBuffers, mostBuffers),
            SPA_PARAM_BUFFERS_dataType, SPA_POD_CHOICE_FLAGS_Int(1 << type))),
        wantedMetadata(builder, SPA_META_Header, sizeof(spa_meta_header)),
        wantedMetadata(builder, SPA_META_VideoCrop, sizeof(spa_meta_region)),
        wantedMetadata(builder, SPA_META_VideoDamage, region * mostDamageRectangles, region,
                       region * mostDamageRectangles),
        wantedMetadata(builder, SPA_META_Cursor, pointerSize(64), pointerSize(1),
                       pointerSize(384))};
}

} // namespace glimmerpane::pipewire
