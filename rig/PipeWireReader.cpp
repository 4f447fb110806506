// SPDX-License-Identifier: MIT
#include "rig/PipeWireReader.h"

#include "rig/Result.h"

#include <array>
#include <pipewire/pipewire.h>
#include <spa/param/video/format-utils.h>
#include <utility>

namespace glimmerpane::testing
{

namespace
{

constexpr uint bytesPerPixel = 4;

pw_loop *enteredLoop()
{
    pw_init(nullptr, nullptr);
    pw_loop *const loop = pw_loop_new(nullptr);
    pw_loop_enter(loop);
    return loop;
}

void leaveLoop(pw_loop *loop)
{
    pw_loop_leave(loop);
    pw_loop_destroy(loop);
    pw_deinit();
}

pw_core *connect(pw_context *context, const QString &socket)
{
    auto *const properties
        = pw_properties_new(PW_KEY_REMOTE_NAME, socket.toLocal8Bit().constData(), nullptr);
    pw_core *const core = pw_context_connect(context, properties, 0);
    if (core == nullptr) {
        throw Failure(QStringLiteral("cannot connect to PipeWire at %1").arg(socket));
    }
    return core;
}

const spa_pod *formats(spa_pod_builder &builder)
{
    const spa_rectangle usual{1280, 720};
    const spa_rectangle least{1, 1};
    const spa_rectangle most{16384, 16384};
    const spa_fraction whenChanged{0, 1};
    const spa_fraction usualRate{60, 1};
    const spa_fraction leastRate{1, 1};
    return static_cast<const spa_pod *>(spa_pod_builder_add_object(
        &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
        SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype,
        SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw), SPA_FORMAT_VIDEO_format,
        SPA_POD_CHOICE_ENUM_Id(3, SPA_VIDEO_FORMAT_BGRx, SPA_VIDEO_FORMAT_BGRx,
                               SPA_VIDEO_FORMAT_BGRA),
        SPA_FORMAT_VIDEO_size, SPA_POD_CHOICE_RANGE_Rectangle(&usual, &least, &most),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&whenChanged), SPA_FORMAT_VIDEO_maxFramerate,
        SPA_POD_CHOICE_RANGE_Fraction(&usualRate, &leastRate, &usualRate)));
}

/** What the sender says is picture; the whole buffer if it says nothing. */
QRect cropOf(const spa_buffer &buffer, QSize size)
{
    const auto *const crop = static_cast<const spa_meta_region *>(
        spa_buffer_find_meta_data(&buffer, SPA_META_VideoCrop, sizeof(spa_meta_region)));
    if (crop == nullptr || !spa_meta_region_is_valid(crop)) {
        return {QPoint(), size};
    }
    const auto &[position, extent] = crop->region;
    return QRect(position.x, position.y, static_cast<int>(extent.width),
                 static_cast<int>(extent.height))
        .intersected({QPoint(), size});
}

/** Null if the buffer only tells of the pointer. */
QImage pictureIn(const spa_buffer &buffer, QSize size)
{
    const spa_data &data = buffer.datas[0];
    const auto stride = static_cast<uint>(data.chunk->stride);
    if (data.data == nullptr || size.isEmpty() || stride < bytesPerPixel * uint(size.width())
        || data.chunk->size < stride * uint(size.height())
        || (data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED) != 0) {
        return {};
    }
    const QImage whole(static_cast<const uchar *>(data.data) + data.chunk->offset, size.width(),
                       size.height(), data.chunk->stride, QImage::Format_RGB32);
    QImage picture = whole.copy(cropOf(buffer, size));
    // The fourth byte means nothing; equal pictures must compare equal.
    return std::move(picture)
        .convertToFormat(QImage::Format_RGB888)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace

struct PipeWireEvents {
    static void paramChanged(void *reader, uint32_t id, const spa_pod *param)
    {
        if (id == SPA_PARAM_Format && param != nullptr) {
            static_cast<PipeWireReader *>(reader)->takeFormat(param);
        }
    }
    static void process(void *reader) { static_cast<PipeWireReader *>(reader)->takeBuffers(); }

    static pw_stream_events table()
    {
        pw_stream_events events{};
        events.version = PW_VERSION_STREAM_EVENTS;
        events.param_changed = paramChanged;
        events.process = process;
        return events;
    }
};

PipeWireReader::PipeWireReader(const QString &socket, uint node)
    : loop_(enteredLoop(), leaveLoop)
    , context_(pw_context_new(loop_.get(), nullptr, 0), pw_context_destroy)
    , core_(connect(context_.get(), socket), pw_core_disconnect)
    , listener_(std::make_unique<spa_hook>())
    , stream_(pw_stream_new(core_.get(), "viewer",
                            pw_properties_new(PW_KEY_MEDIA_TYPE, "Video", PW_KEY_MEDIA_CATEGORY,
                                              "Capture", PW_KEY_MEDIA_ROLE, "Screen", nullptr)),
              pw_stream_destroy)
    , notifier_(
          std::make_unique<QSocketNotifier>(pw_loop_get_fd(loop_.get()), QSocketNotifier::Read))
{
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { pw_loop_iterate(loop_.get(), 0); });
    static const pw_stream_events events = PipeWireEvents::table();
    pw_stream_add_listener(stream_.get(), listener_.get(), &events, this);
    std::array<char, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    const spa_pod *offered = formats(builder);
    const auto flags
        = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS);
    if (pw_stream_connect(stream_.get(), PW_DIRECTION_INPUT, node, flags, &offered, 1) < 0) {
        throw Failure(QStringLiteral("cannot read the PipeWire node %1").arg(node));
    }
    while (pw_loop_iterate(loop_.get(), 0) > 0) { }
}

PipeWireReader::~PipeWireReader() = default;

void PipeWireReader::takeFormat(const void *format)
{
    spa_video_info_raw info{};
    spa_format_video_raw_parse(static_cast<const spa_pod *>(format), &info);
    size_ = QSize(static_cast<int>(info.size.width), static_cast<int>(info.size.height));
    std::array<char, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array parameters{
        static_cast<const spa_pod *>(spa_pod_builder_add_object(
            &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_dataType,
            SPA_POD_CHOICE_FLAGS_Int((1 << SPA_DATA_MemPtr) | (1 << SPA_DATA_MemFd)))),
        static_cast<const spa_pod *>(
            spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta,
                                       SPA_PARAM_META_type, SPA_POD_Id(SPA_META_VideoCrop),
                                       SPA_PARAM_META_size, SPA_POD_Int(sizeof(spa_meta_region))))};
    pw_stream_update_params(stream_.get(), parameters.data(), parameters.size());
}

void PipeWireReader::takeBuffers()
{
    while (pw_buffer *const buffer = pw_stream_dequeue_buffer(stream_.get())) {
        QImage picture = pictureIn(*buffer->buffer, size_);
        pw_stream_queue_buffer(stream_.get(), buffer);
        if (!picture.isNull()) {
            changes_ += pictures_ > 0 && picture.copy(watched_) != picture_.copy(watched_);
            ++pictures_;
            picture_ = std::move(picture);
        }
    }
}

} // namespace glimmerpane::testing
