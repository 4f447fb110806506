// SPDX-License-Identifier: MIT
#include "platform/pipewire/VideoStream.h"
#include "platform/x11/X11Backend.h"
#include "rig/CapturedWindow.h"
#include "rig/PictureComparison.h"
#include "rig/WaitFor.h"
#include "rig/WaylandDesktop.h"
#include "rig/XvfbServer.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QTest>

#include <pipewire/pipewire.h>
#include <spa/param/video/format-utils.h>
#include <sys/mman.h>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr auto patience = std::chrono::seconds(20);
constexpr QSize size(160, 90);
constexpr int stride = 160 * 4;
constexpr int bytes = stride * 90;
constexpr QRgb color = 0xff2060c0;
constexpr std::int64_t linear = 0; // of drm_fourcc.h

/** PipeWire and its session manager, without a compositor. */
struct PipeWireServer : WaylandDesktop {
    explicit PipeWireServer(const XvfbServer &server)
        : WaylandDesktop(QStringLiteral("none"))
    {
        enterDisplay(server.displayName(), {});
    }
};

/**
 * Sends pictures 60 times a second, as a compositor with a graphics card does: in the driver's
 * buffers, if the viewer names one of its layouts, or else in memory. Its driver is a fake.
 */
class Sender
{
public:
    Sender()
    {
        pw_init(nullptr, nullptr);
        loop_ = pw_thread_loop_new("sender", nullptr);
        events_.version = PW_VERSION_STREAM_EVENTS;
        events_.param_changed = [](void *data, std::uint32_t id, const spa_pod *param) {
            if (id == SPA_PARAM_Format && param != nullptr) {
                static_cast<Sender *>(data)->takeFormat(param);
            }
        };
        events_.add_buffer = [](void *, pw_buffer *buffer) { fill(buffer->buffer->datas[0]); };
        events_.remove_buffer
            = [](void *, pw_buffer *buffer) { close(int(buffer->buffer->datas[0].fd)); };
        stream_ = pw_stream_new_simple(
            pw_thread_loop_get_loop(loop_), "sender",
            pw_properties_new(PW_KEY_MEDIA_CLASS, "Video/Source", nullptr), &events_, this);
        offer({linear, linear + 1}, PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_ALLOC_BUFFERS);
        timer_ = pw_loop_add_timer(
            pw_thread_loop_get_loop(loop_),
            [](void *data, std::uint64_t) { static_cast<Sender *>(data)->send(); }, this);
        timespec interval{.tv_sec = 0, .tv_nsec = 16'000'000};
        pw_loop_update_timer(pw_thread_loop_get_loop(loop_), timer_, &interval, &interval, false);
        pw_thread_loop_start(loop_);
    }
    ~Sender()
    {
        pw_thread_loop_stop(loop_);
        pw_stream_destroy(stream_);
        pw_thread_loop_destroy(loop_);
        pw_deinit();
    }
    Q_DISABLE_COPY_MOVE(Sender)

    /** PW_ID_ANY before it is known. */
    std::uint32_t node() const
    {
        pw_thread_loop_lock(loop_);
        const auto id = pw_stream_get_node_id(stream_);
        pw_thread_loop_unlock(loop_);
        return id;
    }

private:
    static const spa_pod *format(spa_pod_builder &builder,
                                 const std::vector<std::int64_t> &modifiers)
    {
        const spa_rectangle rectangle{std::uint32_t(size.width()), std::uint32_t(size.height())};
        const spa_fraction rate{0, 1};
        spa_pod_frame object;
        spa_pod_builder_push_object(&builder, &object, SPA_TYPE_OBJECT_Format,
                                    SPA_PARAM_EnumFormat);
        spa_pod_builder_add(&builder, SPA_FORMAT_mediaType, SPA_POD_Id(SPA_MEDIA_TYPE_video),
                            SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw),
                            SPA_FORMAT_VIDEO_format, SPA_POD_Id(SPA_VIDEO_FORMAT_BGRx),
                            SPA_FORMAT_VIDEO_size, SPA_POD_Rectangle(&rectangle),
                            SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&rate), 0);
        if (!modifiers.empty()) {
            const bool isSettled = modifiers.size() == 1;
            spa_pod_builder_prop(&builder, SPA_FORMAT_VIDEO_modifier,
                                 SPA_POD_PROP_FLAG_MANDATORY
                                     | (isSettled ? 0 : SPA_POD_PROP_FLAG_DONT_FIXATE));
            spa_pod_frame choice;
            spa_pod_builder_push_choice(&builder, &choice,
                                        isSettled ? SPA_CHOICE_None : SPA_CHOICE_Enum, 0);
            spa_pod_builder_long(&builder, modifiers[0]); // preferred
            for (const std::int64_t modifier : modifiers) {
                spa_pod_builder_long(&builder, modifier);
            }
            spa_pod_builder_pop(&builder, &choice);
        }
        return static_cast<const spa_pod *>(spa_pod_builder_pop(&builder, &object));
    }

    /** Connects the first time. */
    void offer(const std::vector<std::int64_t> &modifiers, std::optional<int> connect = {})
    {
        std::array<std::byte, 2048> memory{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, memory.data(), memory.size());
        std::array formats{format(builder, modifiers), format(builder, {})};
        if (connect) {
            pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY, pw_stream_flags(*connect),
                              formats.data(), formats.size());
        } else {
            pw_stream_update_params(stream_, formats.data(), formats.size());
        }
    }

    void takeFormat(const spa_pod *format)
    {
        const auto *const modifier = spa_pod_find_prop(format, nullptr, SPA_FORMAT_VIDEO_modifier);
        if (modifier != nullptr && (modifier->flags & SPA_POD_PROP_FLAG_DONT_FIXATE) != 0) {
            offer({linear}); // what it can make of the viewer's
            return;
        }
        std::array<std::byte, 1024> memory{};
        spa_pod_builder builder{};
        spa_pod_builder_init(&builder, memory.data(), memory.size());
        const int type = modifier != nullptr ? SPA_DATA_DmaBuf : SPA_DATA_MemFd;
        const auto *buffers = static_cast<const spa_pod *>(spa_pod_builder_add_object(
            &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
            SPA_POD_CHOICE_RANGE_Int(8, 2, 16), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1),
            SPA_PARAM_BUFFERS_size, SPA_POD_Int(bytes), SPA_PARAM_BUFFERS_stride,
            SPA_POD_Int(stride), SPA_PARAM_BUFFERS_dataType, SPA_POD_CHOICE_FLAGS_Int(1 << type)));
        pw_stream_update_params(stream_, &buffers, 1);
    }

    static void fill(spa_data &data)
    {
        const bool isDriver = (data.type & (1U << SPA_DATA_DmaBuf)) != 0;
        data.type = isDriver ? SPA_DATA_DmaBuf : SPA_DATA_MemFd;
        data.fd = memfd_create("buffer", MFD_CLOEXEC);
        data.maxsize = bytes;
        data.mapoffset = 0;
        const std::vector<QRgb> pixels(bytes / sizeof(QRgb), color);
        require(write(int(data.fd), pixels.data(), bytes) == bytes, "no memory");
    }

    void send()
    {
        if (pw_buffer *const buffer = pw_stream_dequeue_buffer(stream_)) {
            *buffer->buffer->datas[0].chunk
                = {.offset = 0, .size = bytes, .stride = stride, .flags = SPA_CHUNK_FLAG_NONE};
            pw_stream_queue_buffer(stream_, buffer);
        }
    }

    pw_thread_loop *loop_ = nullptr;
    pw_stream_events events_{};
    pw_stream *stream_ = nullptr;
    spa_source *timer_ = nullptr;
};

/** The first pixel of a buffer. */
QRgb pixelOf(const DmaBuffer &buffer)
{
    QRgb pixel = 0;
    return pread(buffer.planes.at(0).file.get(), &pixel, sizeof pixel, buffer.planes[0].offset)
            == sizeof pixel
        ? pixel
        : 0;
}

} // namespace

class DmaBufferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /** Xvfb has no graphics driver, so it refuses them, and memory is asked for instead. */
    void driversBuffers_areHandedOn_untilTheServerRefusesThem()
    {
        const XvfbServer server = required(XvfbServer::start());
        const PipeWireServer pipeWire(server);
        const Sender sender;
        QVERIFY(waitFor([&] { return sender.node() != PW_ID_ANY; }, patience));
        const Backend desktop = x11::makeBackend(false);
        const auto window
            = desktop.outputWindows->make(QStringLiteral("window"), {QPoint(), size}).value();
        window->orderFront();
        const auto layer = window->makeDisplayLayer().value();

        pipewire::VideoStream stream({.id = sender.node(),
                                      .remote = {},
                                      .area = {QPoint(), size},
                                      .partOf = [](QSize, QRect area) { return area; },
                                      .minimumFrameInterval = std::chrono::milliseconds(16),
                                      .modifiers = {0x0300000000000001, linear}},
                                     std::make_shared<QThreadPool>());
        std::vector<std::shared_ptr<const DmaBuffer>> driven;
        int mapped = 0;
        const auto show = [&](const SampleBuffer &sample) {
            if (const auto *const picture = std::get_if<DmaPicture>(&sample.picture)) {
                driven.push_back(picture->buffer);
            }
            mapped += std::holds_alternative<MappedPixels>(sample.picture);
            if (layer->isReadyForMoreMediaData()) {
                layer->enqueueSampleBuffer(sample);
            }
        };
        const auto frame = [&](SampleBuffer sample) {
            QMetaObject::invokeMethod(this, [&show, sample = std::move(sample)] { show(sample); });
        };
        const auto started = QCoro::waitFor(stream.startCapture(
            {.didOutputSampleBuffer = frame, .didStopWithError = [](const Error &) { }}));
        QVERIFY2(started.has_value(), qPrintable(started ? QString() : started.error().log));

        QVERIFY(waitFor([&] { return mapped > 0; }, patience));
        QVERIFY(!driven.empty());
        QCOMPARE(driven[0]->modifier, std::uint64_t(linear));
        QCOMPARE(driven[0]->size, size);
        QCOMPARE(driven[0]->planes.size(), 1U);
        QCOMPARE(driven[0]->planes[0].stride, std::uint32_t(stride));
        QCOMPARE(pixelOf(*driven[0]), color);

        QImage expected(size, QImage::Format_RGB32);
        expected.fill(color);
        const XClient client = required(XClient::connect(server.displayName()));
        const auto shown = [&] {
            return windowPicture(client, *findWindow(client, QStringLiteral("window")))
                .value_or(QImage());
        };
        QVERIFY(becomeEqual(shown, [&] { return expected; }, patience));
        stream.stopCapture();
    }
};

QTEST_MAIN(DmaBufferTest)
#include "DmaBufferTest.moc"
