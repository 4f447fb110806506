// SPDX-License-Identifier: MIT
#include "rig/KWinSession.h"

#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>

#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds limit{30};
const QString busName = QStringLiteral("kwin-session");

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

KWinSession::KWinSession(const Options &options)
    : WaylandDesktop(QStringLiteral("KDE"))
    , bus_(QDBusConnection::connectToBus(busAddress(), busName))
{
    if (!options.installed.isEmpty()) {
        setVariable("XDG_DATA_DIRS",
                    options.installed + QStringLiteral(":/usr/local/share:/usr/share"));
        writeMenu();
    }
    startKWin(options);
}

KWinSession::~KWinSession()
{
    QDBusConnection::disconnectFromBus(busName);
}

/** KDE finds only those desktop entries that a menu has. */
void KWinSession::writeMenu() const
{
    const QString folder
        = environment().value(QStringLiteral("XDG_CONFIG_HOME")) + QStringLiteral("/menus");
    QDir().mkpath(folder);
    QFile menu(folder + QStringLiteral("/applications.menu"));
    require(
        menu.open(QIODevice::WriteOnly)
            && menu.write("<Menu><Name>All</Name><DefaultAppDirs/><Include><All/></Include></Menu>")
                > 0,
        "cannot write a menu");
}

void KWinSession::startKWin(const Options &options)
{
    // The packaged one has a file capability, which a container may not grant. A copy has none, but
    // must have the same name, or it does not load its own plugin for Qt.
    const QString copy = runtimeFile(QStringLiteral("kwin_wayland"));
    require(QFile::copy(QStandardPaths::findExecutable(QStringLiteral("kwin_wayland")), copy),
            "kwin_wayland is not installed");
    const QString started = runtimeFile(QStringLiteral("started"));
    QFile script(runtimeFile(QStringLiteral("script")));
    require(script.open(QIODevice::WriteOnly)
                && script.write("#!/bin/sh\necho \"$DISPLAY $XAUTHORITY\" > "
                                + started.toLocal8Bit() + '\n')
                    > 0,
            "cannot write a script");
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    auto environment = compositorEnvironment();
    const auto enable = [&environment](const char *name) {
        environment.insert(QString::fromLatin1(name), QStringLiteral("1"));
    };
    enable("LIBGL_ALWAYS_SOFTWARE");
    enable("KWIN_SCREENSHOT_NO_PERMISSION_CHECKS");
    if (options.installed.isEmpty()) {
        enable("KWIN_WAYLAND_NO_PERMISSION_CHECKS");
    }
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(GLIMMERPANE_MEMORY_GRAPHICS));
    environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP")); // it would load Plasma's parts
    kwin_ = required(ChildProcess::start(
        {.program = copy,
         .arguments = {QStringLiteral("--virtual"), QStringLiteral("--width"),
                       QString::number(options.screen.width()), QStringLiteral("--height"),
                       QString::number(options.screen.height()), QStringLiteral("--xwayland"),
                       QStringLiteral("--socket"), QStringLiteral("wayland-0"),
                       QStringLiteral("--no-lockscreen"), QStringLiteral("--no-global-shortcuts"),
                       script.fileName()},
         .environment = environment}));
    const auto isReady = [&] { return contentOf(started).endsWith('\n'); };
    if (!waitFor([&] { return isReady() || !kwin_.isRunning(); }, limit) || !isReady()) {
        throw Failure(QStringLiteral("KWin did not start: ")
                      + QString::fromLocal8Bit(kwin_.output()));
    }
    const QStringList names = QString::fromLocal8Bit(contentOf(started).trimmed()).split(u' ');
    enterDisplay(names.value(0), names.value(1));
}

int KWinSession::majorVersion() const
{
    const auto ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.KWin"), QStringLiteral("/KWin"), QStringLiteral("org.kde.KWin"),
        QStringLiteral("supportInformation"));
    static const QRegularExpression version(QStringLiteral("KWin version: ([0-9]+)"));
    return version.match(bus_.call(ask).arguments().value(0).toString()).captured(1).toInt();
}

QImage KWinSession::screenshot(const QRect &rectangle) const
{
    std::array<int, 2> ends{};
    require(pipe2(ends.data(), O_CLOEXEC) == 0, "cannot make a pipe");
    const FileDescriptor reader(ends[0]);
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.KWin"), QStringLiteral("/org/kde/KWin/ScreenShot2"),
        QStringLiteral("org.kde.KWin.ScreenShot2"), QStringLiteral("CaptureArea"));
    {
        const FileDescriptor writer(ends[1]);
        message.setArguments({rectangle.x(), rectangle.y(), uint(rectangle.width()),
                              uint(rectangle.height()), QVariantMap(),
                              QVariant::fromValue(QDBusUnixFileDescriptor(writer.get()))});
    }
    const QDBusMessage reply = bus_.call(message);
    message.setArguments({}); // the last copy of the writing end
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw Failure(QStringLiteral("no screenshot: ") + reply.errorMessage());
    }
    QFile file;
    require(file.open(reader.get(), QIODevice::ReadOnly), "cannot read the screenshot");
    const QByteArray pixels = file.readAll();
    require(pixels.size() == qsizetype{rectangle.width()} * rectangle.height() * 4,
            "the screenshot has another size");
    return QImage(reinterpret_cast<const uchar *>(pixels.constData()), rectangle.width(),
                  rectangle.height(), QImage::Format_RGB32)
        .copy();
}

} // namespace glimmerpane::testing
