// SPDX-License-Identifier: MIT
#include "rig/GnomeScreenCast.h"

#include "rig/Result.h"
#include "rig/WaitFor.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds limit{30};
constexpr int leftButton = 0x110; // BTN_LEFT of Linux's input events

const QString castService = QStringLiteral("org.gnome.Mutter.ScreenCast");
const QString castSession = QStringLiteral("org.gnome.Mutter.ScreenCast.Session");
const QString castStream = QStringLiteral("org.gnome.Mutter.ScreenCast.Stream");
const QString inputService = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
const QString inputSession = QStringLiteral("org.gnome.Mutter.RemoteDesktop.Session");

QString pathIn(const QVariantList &reply)
{
    return reply.value(0).value<QDBusObjectPath>().path();
}

QString pathOf(QString service)
{
    return u'/' + service.replace(u'.', u'/');
}

} // namespace

QVariantList call(const QDBusConnection &bus, const QString &service, const QString &path,
                  const QString &interface, const QString &method, const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const auto reply = bus.call(message);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw Failure(QStringLiteral("%1: %2").arg(method, reply.errorMessage()));
    }
    return reply.arguments();
}

GnomeScreenCast::GnomeScreenCast(const QDBusConnection &bus, const Source &source)
    : bus_(bus)
{
    QVariantMap belonging;
    if (!source.remoteDesktop.isEmpty()) {
        belonging[QStringLiteral("remote-desktop-session-id")] = source.remoteDesktop;
    }
    session_ = pathIn(call(bus_, castService, pathOf(castService), castService,
                           QStringLiteral("CreateSession"), {belonging}));
    QVariantMap properties{
        {QStringLiteral("cursor-mode"), source.pointer == Pointer::Hidden ? 0U : 1U}};
    const auto record = [&](const char *method, const QVariantList &arguments) {
        return pathIn(
            call(bus_, castService, session_, castSession, QString::fromLatin1(method), arguments));
    };
    if (!source.monitor.isEmpty()) {
        stream_ = record("RecordMonitor", {source.monitor, properties});
    } else if (const QRect &area = source.area; !area.isEmpty()) {
        stream_
            = record("RecordArea", {area.x(), area.y(), area.width(), area.height(), properties});
    } else {
        properties[QStringLiteral("window-id")] = source.window;
        stream_ = record("RecordWindow", {properties});
    }
    bus_.connect(castService, stream_, castStream, QStringLiteral("PipeWireStreamAdded"), this,
                 SLOT(onStreamAdded(uint)));
}

GnomeScreenCast::~GnomeScreenCast()
{
    if (isStarted_) {
        bus_.call(QDBusMessage::createMethodCall(castService, session_, castSession,
                                                 QStringLiteral("Stop")));
    }
}

void GnomeScreenCast::start()
{
    call(bus_, castService, session_, castSession, QStringLiteral("Start"));
    isStarted_ = true;
}

uint GnomeScreenCast::node()
{
    require(waitFor([this] { return node_.has_value(); }, limit), "gnome-shell made no stream");
    return *node_;
}

GnomeInput::GnomeInput(const QDBusConnection &bus, const QString &monitor)
    : bus_(bus)
    , session_(pathIn(call(bus_, inputService, pathOf(inputService), inputService,
                           QStringLiteral("CreateSession"))))
{
    const auto id
        = call(bus_, inputService, session_, QStringLiteral("org.freedesktop.DBus.Properties"),
               QStringLiteral("Get"), {inputSession, QStringLiteral("SessionId")});
    cast_ = std::make_unique<GnomeScreenCast>(
        bus_,
        GnomeScreenCast::Source{.monitor = monitor,
                                .remoteDesktop
                                = id.value(0).value<QDBusVariant>().variant().toString()});
    notify(QStringLiteral("Start"), {}); // also the stream
    cast_->node();
}

GnomeInput::~GnomeInput()
{
    bus_.call(QDBusMessage::createMethodCall(inputService, session_, inputSession,
                                             QStringLiteral("Stop")));
}

void GnomeInput::moveTo(QPoint place) const
{
    notify(QStringLiteral("NotifyPointerMotionAbsolute"),
           {cast_->streamPath(), double(place.x()), double(place.y())});
}

void GnomeInput::click(QPoint place) const
{
    moveTo(place);
    press();
    release();
}

void GnomeInput::button(bool isPressed) const
{
    notify(QStringLiteral("NotifyPointerButton"), {leftButton, isPressed});
}

void GnomeInput::key(uint keysym, bool isPressed) const
{
    notify(QStringLiteral("NotifyKeyboardKeysym"), {keysym, isPressed});
}

void GnomeInput::notify(const QString &method, const QVariantList &arguments) const
{
    call(bus_, inputService, session_, inputSession, method, arguments);
}

} // namespace glimmerpane::testing
