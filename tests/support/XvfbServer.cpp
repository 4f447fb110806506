// SPDX-License-Identifier: MIT
#include "tests/support/XvfbServer.h"

#include <QDeadlineTimer>

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds startLimit{20};

/** The line that the server writes once it accepts clients; empty if it does not in time. */
QByteArray readDisplayNumber(int descriptor)
{
    QByteArray text;
    const QDeadlineTimer deadline(startLimit);
    while (!text.endsWith('\n') && !deadline.hasExpired()) {
        pollfd entry{.fd = descriptor, .events = POLLIN, .revents = 0};
        if (poll(&entry, 1, static_cast<int>(deadline.remainingTime())) <= 0) {
            continue;
        }
        std::array<char, 16> block{};
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count <= 0) {
            return {};
        }
        text.append(block.data(), count);
    }
    return text.trimmed();
}

} // namespace

Result<XvfbServer> XvfbServer::start(const Options &options)
{
    std::array<int, 2> pipeEnds{};
    if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) {
        return failure(QStringLiteral("no pipe for the X server"));
    }
    const FileDescriptor readEnd(pipeEnds[0]);
    FileDescriptor writeEnd(pipeEnds[1]);
    const QString screen
        = QStringLiteral("%1x%2x24").arg(options.screen.width()).arg(options.screen.height());
    QStringList arguments{QStringLiteral("-displayfd"),
                          QString::number(writeEnd.get()),
                          QStringLiteral("-screen"),
                          QStringLiteral("0"),
                          screen,
                          QStringLiteral("-nolisten"),
                          QStringLiteral("tcp"),
                          QStringLiteral("-noreset")};
    auto process = ChildProcess::start({.program = QStringLiteral("Xvfb"),
                                        .arguments = arguments + options.arguments,
                                        .inheritedDescriptor = writeEnd.get()});
    if (!process) {
        return failure(process.error());
    }
    writeEnd.reset();
    const QByteArray number = readDisplayNumber(readEnd.get());
    if (number.isEmpty()) {
        return failure(QStringLiteral("Xvfb did not start: %1")
                           .arg(QString::fromLocal8Bit(process->output())));
    }
    XvfbServer server;
    server.process_ = std::move(*process);
    server.displayName_ = u':' + QString::fromLatin1(number);
    server.screenSize_ = options.screen;
    return server;
}

QProcessEnvironment XvfbServer::environment() const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"WAYLAND_DISPLAY", "XAUTHORITY", "XDG_CURRENT_DESKTOP",
                             "XDG_SESSION_TYPE", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR",
                             "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("DISPLAY"), displayName_);
    return environment;
}

void XvfbServer::run(const QString &program, const QStringList &arguments) const
{
    auto process = required(ChildProcess::start(
        {.program = program, .arguments = arguments, .environment = environment()}));
    if (!process.waitForEnd(std::chrono::seconds(10)) || process.exitCode() != 0) {
        qFatal("%s failed: %s", qPrintable(program), process.output().constData());
    }
}

void XvfbServer::setMonitor(const QString &name, QRect rectangle, const QString &output) const
{
    const QString place = QStringLiteral("%1/%1x%2/%2+%3+%4")
                              .arg(rectangle.width())
                              .arg(rectangle.height())
                              .arg(rectangle.x())
                              .arg(rectangle.y());
    run(QStringLiteral("xrandr"), {QStringLiteral("--setmonitor"), name, place, output});
}

} // namespace glimmerpane::testing
