// SPDX-License-Identifier: MIT
#include "platform/kwin/KWinRecorder.h"

#include "platform/Answer.h"
#include "platform/Log.h"
#include "platform/pipewire/LogicalRegion.h"
#include "platform/wayland/WaylandSession.h"
#include "zkde-screencast-unstable-v1-client-protocol.h"

#include <QCoroFuture>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <utility>

namespace glimmerpane::wayland
{

template<>
struct Destroy<zkde_screencast_unstable_v1> {
    void operator()(zkde_screencast_unstable_v1 *it) const
    {
        zkde_screencast_unstable_v1_destroy(it);
    }
};
template<>
struct Destroy<zkde_screencast_stream_unstable_v1> {
    void operator()(zkde_screencast_stream_unstable_v1 *it) const
    {
        zkde_screencast_stream_unstable_v1_close(it);
    }
};

} // namespace glimmerpane::wayland

namespace glimmerpane::kwin
{

namespace
{

using namespace std::chrono_literals;
using wayland::WaylandObject;
using wayland::WaylandSession;

constexpr std::uint32_t version = 3; ///< the first one that records regions

/** KWin answers within 50 ms. */
constexpr auto longestWait = 10s;

using Node = std::expected<std::uint32_t, Error>;

/** A connection to KWin on which it records a region. */
class KWinSession : public pipewire::RecordingSession
{
public:
    using Ended = std::function<void(const Error &)>;

    KWinSession(std::unique_ptr<WaylandSession> wayland,
                WaylandObject<zkde_screencast_unstable_v1> screencast, Ended ended);

    /** Waits for the number of PipeWire's node. Once. */
    QFuture<Node> start(const pipewire::LogicalRegion &region, bool showsCursor);

    /** All displays, in KWin's units. */
    QRect desktop() const;

private:
    static const zkde_screencast_stream_unstable_v1_listener &listener();

    void readEvents();
    void end(const Error &error);

    const std::unique_ptr<WaylandSession> wayland_; // destroyed last
    const WaylandObject<zkde_screencast_unstable_v1> screencast_;
    WaylandObject<zkde_screencast_stream_unstable_v1> stream_;
    const Ended ended_;
    const std::shared_ptr<Answer<Node>> node_ = std::make_shared<Answer<Node>>();
    QSocketNotifier notifier_;
};

KWinSession::KWinSession(std::unique_ptr<WaylandSession> wayland,
                         WaylandObject<zkde_screencast_unstable_v1> screencast, Ended ended)
    : wayland_(std::move(wayland))
    , screencast_(std::move(screencast))
    , ended_(std::move(ended))
    , notifier_(wayland_->fileDescriptor(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { readEvents(); });
}

const zkde_screencast_stream_unstable_v1_listener &KWinSession::listener()
{
    // Later versions of the protocol have more events, which this version never gets.
    static const auto table = [] {
        zkde_screencast_stream_unstable_v1_listener events{};
        events.created = [](void *data, zkde_screencast_stream_unstable_v1 *, std::uint32_t node) {
            static_cast<KWinSession *>(data)->node_->give(node);
        };
        events.failed = [](void *data, zkde_screencast_stream_unstable_v1 *, const char *text) {
            const QString reason = QString::fromUtf8(text);
            static_cast<KWinSession *>(data)->end(
                {.text = Error::tr("KWin does not record the screen: %1").arg(reason),
                 .log = QStringLiteral("zkde_screencast: failed: ") + reason});
        };
        events.closed = [](void *data, zkde_screencast_stream_unstable_v1 *) {
            static_cast<KWinSession *>(data)->end(
                {.text = Error::tr("The desktop no longer delivers the picture of the screen."),
                 .log = QStringLiteral("zkde_screencast: closed")});
        };
        return events;
    }();
    return table;
}

QFuture<Node> KWinSession::start(const pipewire::LogicalRegion &region, bool showsCursor)
{
    const QRect &logical = region.logical;
    stream_.reset(zkde_screencast_unstable_v1_stream_region(
        screencast_.get(), logical.x(), logical.y(), static_cast<std::uint32_t>(logical.width()),
        static_cast<std::uint32_t>(logical.height()), wl_fixed_from_double(region.scale),
        showsCursor ? ZKDE_SCREENCAST_UNSTABLE_V1_POINTER_EMBEDDED
                    : ZKDE_SCREENCAST_UNSTABLE_V1_POINTER_HIDDEN));
    zkde_screencast_stream_unstable_v1_add_listener(stream_.get(), &listener(), this);
    QTimer::singleShot(longestWait, [node = node_] {
        node->give(std::unexpected(
            Error{.text = Error::tr("The desktop has not delivered a picture of the screen."),
                  .log = QStringLiteral("zkde_screencast: neither created nor failed")}));
    });
    readEvents(); // which sends the request
    return node_->future();
}

QRect KWinSession::desktop() const
{
    QRect all;
    for (const wayland::Output *output : wayland_->outputs()) {
        all |= output->state.logical;
    }
    return all;
}

void KWinSession::readEvents()
{
    if (!wayland_->wait(-1, 0ns)) {
        notifier_.setEnabled(false);
        end({.text = Error::tr("The connection to the Wayland compositor was lost."),
             .log = QStringLiteral("Wayland: %1").arg(qt_error_string(errno))});
    }
}

/** Tells why in the next turn of the event loop: this object may be destroyed then. */
void KWinSession::end(const Error &error)
{
    if (!node_->give(std::unexpected(error))) {
        QTimer::singleShot(0, &notifier_, [this, error] { ended_(error); });
    }
}

struct Opened {
    std::unique_ptr<WaylandSession> wayland; // destroyed last
    WaylandObject<zkde_screencast_unstable_v1> screencast;
};

std::expected<Opened, Error> open()
{
    auto wayland = WaylandSession::open();
    if (!wayland) {
        return std::unexpected(wayland.error());
    }
    auto screencast = (*wayland)->bind<zkde_screencast_unstable_v1>(
        zkde_screencast_unstable_v1_interface, version);
    if (!screencast) {
        return std::unexpected(
            Error{.text = Error::tr("KWin does not let this program record the screen. It does so "
                                    "once Glimmerpane is installed; --backend=portal asks you "
                                    "instead."),
                  .log = QStringLiteral("zkde_screencast_unstable_v1 3 is not announced"),
                  .outcome = Outcome::unavailable});
    }
    return Opened{.wayland = std::move(*wayland), .screencast = std::move(screencast)};
}

} // namespace

std::expected<void, Error> checkPermission()
{
    if (const auto opened = open(); !opened) {
        return std::unexpected(opened.error());
    }
    return {};
}

KWinRecorder::KWinRecorder(std::shared_ptr<Displays> displays)
    : displays_(std::move(displays))
{
}

QCoro::Task<pipewire::AreaRecorder::Result> KWinRecorder::record(
    QRect area, bool showsCursor, std::function<void(const Error &)> ended)
{
    auto opened = open();
    if (!opened) {
        co_return std::unexpected(opened.error());
    }
    auto session = std::make_unique<KWinSession>(std::move(opened->wayland),
                                                 std::move(opened->screencast), std::move(ended));
    const QRect pixels = boundsOf(displays_->displays());
    const pipewire::LogicalRegion region = pipewire::regionOf(area, pixels, session->desktop());
    qCInfo(platformLog) << "KWin is to record" << region.logical << "at scale" << region.scale;
    auto started = session->start(region, showsCursor);
    const auto node = co_await started;
    if (!node) {
        co_return std::unexpected(node.error());
    }
    // KWin 6.3 leaves out what changes in the region's left and upper part: it intersects with the
    // region after it has moved the damage to the region's origin.
    co_return pipewire::AreaRecording{
        .node = *node, .part = region.part, .session = std::move(session), .tellsChanges = false};
}

} // namespace glimmerpane::kwin
