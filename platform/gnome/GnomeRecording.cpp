// SPDX-License-Identifier: MIT
#include "platform/gnome/GnomeRecording.h"

#include "platform/Answer.h"
#include "platform/Log.h"
#include "platform/bus/BusSignal.h"
#include "platform/gnome/Stage.h"
#include "platform/pipewire/LogicalRegion.h"

#include <QCoroFuture>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QTimer>

#include <chrono>
#include <optional>
#include <utility>

namespace glimmerpane::gnome
{

namespace
{

using namespace std::chrono_literals;

// The interfaces are described in mutter's org.gnome.Mutter.ScreenCast.xml.
const BusObject &screenCast()
{
    static const BusObject object{.service = QStringLiteral("org.gnome.Mutter.ScreenCast"),
                                  .path = QStringLiteral("/org/gnome/Mutter/ScreenCast"),
                                  .interface = QStringLiteral("org.gnome.Mutter.ScreenCast")};
    return object;
}

BusObject part(const QVariantList &reply, const QString &interface)
{
    return {.service = screenCast().service,
            .path = reply.value(0).value<QDBusObjectPath>().path(),
            .interface = screenCast().interface + interface};
}

// How the pointer comes, in the numbers of the interface.
constexpr uint hiddenPointer = 0;
constexpr uint embeddedPointer = 1;
constexpr uint pointerAsMetadata = 2;

/**
 * The pointer apart from the picture is cheaper, but mutter 43 crashes, and the desktop with it,
 * when the pointer enters an area that is recorded so. Version 48 does not.
 */
uint shownPointer()
{
    constexpr int soundVersion = 48;
    return majorVersion() >= soundVersion ? pointerAsMetadata : embeddedPointer;
}

/** The shell answers within 100 ms. */
constexpr auto longestWait = 10s;

/** A session of the shell's service; ends with the object. */
class GnomeSession : public pipewire::RecordingSession
{
public:
    using Ended = std::function<void(const Error &)>;

    GnomeSession(BusObject session, const Ended &ended)
        : session_(std::move(session))
        , closed_(session_, QStringLiteral("Closed"),
                  [ended](const QVariantList &) {
                      ended({.text = Error::tr("Sharing was stopped."),
                             .log = QStringLiteral("GNOME has closed the session"),
                             .outcome = Outcome::cancelled});
                  })
        , shell_(screenCast().service, [ended] {
            ended({.text = Error::tr("GNOME's screen-cast service has ended."),
                   .log = QStringLiteral("org.gnome.Mutter.ScreenCast lost its owner"),
                   .outcome = Outcome::unavailable});
        })
    {
    }
    ~GnomeSession() override { session_.send(QStringLiteral("Stop")); }
    Q_DISABLE_COPY_MOVE(GnomeSession)

    const BusObject &object() const { return session_; }

private:
    const BusObject session_;
    const BusSignal closed_;
    const BusOwnerWatch shell_;
};

} // namespace

int majorVersion()
{
    const QString shell = QStringLiteral("org.gnome.Shell");
    auto get = QDBusMessage::createMethodCall(shell, QStringLiteral("/org/gnome/Shell"),
                                              QStringLiteral("org.freedesktop.DBus.Properties"),
                                              QStringLiteral("Get"));
    get << shell << QStringLiteral("ShellVersion");
    constexpr int longest = 2000; // milliseconds
    const auto reply = QDBusConnection::sessionBus().call(get, QDBus::Block, longest);
    const auto version = reply.arguments().value(0).value<QDBusVariant>().variant().toString();
    qCInfo(platformLog) << "GNOME Shell" << version;
    return version.section(u'.', 0, 0).toInt();
}

bool isScreenCastThere()
{
    return screenCast().isThere();
}

GnomeRecorder::GnomeRecorder(std::shared_ptr<Displays> displays)
    : displays_(std::move(displays))
{
}

QCoro::Task<pipewire::AreaRecorder::Result> GnomeRecorder::record(
    QRect area, bool showsCursor, std::function<void(const Error &)> ended)
{
    const QVariantList noProperties{QVariantMap()};
    const auto session = co_await screenCast().call(QStringLiteral("CreateSession"), noProperties);
    if (!session) {
        co_return std::unexpected(session.error());
    }
    auto running
        = std::make_unique<GnomeSession>(part(*session, QStringLiteral(".Session")), ended);

    const uint pointer = showsCursor ? shownPointer() : hiddenPointer;
    const QRect pixels = boundsOf(displays_->displays());
    const Stage stage = co_await gnome::stage();
    const auto region = pipewire::regionOf(area, pixels, {QPoint(), stage.size});
    const QRect &units = region.logical;
    const QVariantMap properties{{QStringLiteral("cursor-mode"), pointer}};
    const QVariantList what{units.x(), units.y(), units.width(), units.height(), properties};
    const auto stream = co_await running->object().call(QStringLiteral("RecordArea"), what);
    if (!stream) {
        co_return std::unexpected(stream.error());
    }
    const auto node = std::make_shared<Answer<std::optional<uint>>>();
    const BusSignal added(
        part(*stream, QStringLiteral(".Stream")), QStringLiteral("PipeWireStreamAdded"),
        [node](const QVariantList &values) { node->give(values.value(0).toUInt()); });
    QTimer::singleShot(longestWait, [node] { node->give(std::nullopt); });
    const auto started = co_await running->object().call(QStringLiteral("Start"));
    if (!started) {
        co_return std::unexpected(started.error());
    }
    const auto number = co_await node->future();
    if (!number) {
        co_return std::unexpected(
            Error{.text = Error::tr("The desktop has not delivered a picture of the screen."),
                  .log = QStringLiteral("PipeWireStreamAdded did not come")});
    }
    co_return pipewire::AreaRecording{
        .node = *number, .part = region.part, .session = std::move(running)};
}

} // namespace glimmerpane::gnome
