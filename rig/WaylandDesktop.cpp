// SPDX-License-Identifier: MIT
#include "rig/WaylandDesktop.h"

#include "rig/XClient.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds limit{30};

/** Without systemd the first X server makes it; what root's makes, mutter refuses to use. */
void prepareSocketFolder()
{
    constexpr auto *path = "/tmp/.X11-unix";
    mkdir(path, 0);
    chmod(path, 01777); // does nothing where the folder is not ours
}

/** Our own environment without what is left of another session. */
QProcessEnvironment plainEnvironment()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto &name : environment.keys()) {
        if (name.startsWith(QStringLiteral("XDG_")) || name.startsWith(QStringLiteral("QT_"))) {
            environment.remove(name);
        }
    }
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "DESKTOP_SESSION"}) {
        environment.remove(QString::fromLatin1(name));
    }
    return environment;
}

} // namespace

WaylandDesktop::WaylandDesktop(const QString &desktop)
    : environment_(plainEnvironment())
{
    makeFolders();
    setVariable("XDG_CURRENT_DESKTOP", desktop);
    setVariable("XDG_SESSION_DESKTOP", desktop.toLower());
    setVariable("XDG_SESSION_TYPE", QStringLiteral("wayland"));
    setVariable("WAYLAND_DISPLAY", QStringLiteral("wayland-0"));
    setVariable("GLIMMERPANE_NO_UPDATE_CHECK", QStringLiteral("1"));
    systemBus_ = required(SessionBus::start(environment_));
    setVariable("DBUS_SYSTEM_BUS_ADDRESS", systemBus_->address());
    sessionBus_ = required(SessionBus::start(environment_));
    setVariable("DBUS_SESSION_BUS_ADDRESS", sessionBus_->address());
    startPipeWire();
}

WaylandDesktop::~WaylandDesktop()
{
    qunsetenv("DISPLAY");
    qunsetenv("XAUTHORITY");
    qunsetenv("PIPEWIRE_RUNTIME_DIR");
}

void WaylandDesktop::setVariable(const char *name, const QString &value)
{
    environment_.insert(QString::fromLatin1(name), value);
}

void WaylandDesktop::makeFolders()
{
    for (const auto &[variable, name] : {std::pair("XDG_RUNTIME_DIR", "run"),
                                         {"HOME", "home"},
                                         {"XDG_CONFIG_HOME", "config"},
                                         {"XDG_DATA_HOME", "data"},
                                         {"XDG_CACHE_HOME", "cache"}}) {
        const QString path = scratch_.filePath(QString::fromLatin1(name));
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        setVariable(variable, path);
    }
}

void WaylandDesktop::startPipeWire()
{
    pipeWire_ = required(
        ChildProcess::start({.program = QStringLiteral("pipewire"), .environment = environment_}));
    require(
        waitFor([this] { return QFile::exists(runtimeFile(QStringLiteral("pipewire-0"))); }, limit),
        "PipeWire did not start");
    sessionManager_ = required(ChildProcess::start(
        {.program = QStringLiteral("wireplumber"), .environment = environment_}));
}

QProcessEnvironment WaylandDesktop::compositorEnvironment() const
{
    prepareSocketFolder();
    auto environment = environment_;
    environment.remove(QStringLiteral("WAYLAND_DISPLAY")); // it would be a client of that
    return environment;
}

void WaylandDesktop::enterDisplay(const QString &display, const QString &authority)
{
    setVariable("DISPLAY", display);
    setVariable("XAUTHORITY", authority);
    for (const char *name : {"DISPLAY", "XAUTHORITY"}) {
        qputenv(name, environment_.value(QString::fromLatin1(name)).toLocal8Bit());
    }
    qputenv("PIPEWIRE_RUNTIME_DIR", QFileInfo(runtimeFile({})).path().toLocal8Bit());
    require(waitFor([this] { return XClient::connect(displayName()).has_value(); }, limit),
            "Xwayland did not start");
}

} // namespace glimmerpane::testing
