// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/DisplayEnvironment.h"
#include "rig/WaitFor.h"

#include <QRect>
#include <QSize>

namespace glimmerpane::testing
{

/**
 * A private X server without hardware, on the first free display number, 24 bits deep, not
 * reachable from the network. Ends with the object.
 */
class XvfbServer
{
public:
    struct Options {
        QSize screen{1280, 1024}; ///< root pixels
        QStringList arguments{}; ///< appended to the server's command line
    };

    /** Returns once the server accepts clients. */
    static Result<XvfbServer> start(const Options &options)
    {
        constexpr std::chrono::seconds limit{20};
        // The server inherits this file and writes a line there once it accepts clients.
        const FileDescriptor display(memfd_create("display", 0));
        const auto command
            = QStringLiteral("-displayfd %1 -screen 0 %2x%3x24 -nolisten tcp -noreset")
                  .arg(display.get())
                  .arg(options.screen.width())
                  .arg(options.screen.height());
        auto process = ChildProcess::start({.program = QStringLiteral("Xvfb"),
                                            .arguments = command.split(u' ') + options.arguments});
        if (!process) {
            return failure(process.error());
        }
        const auto isReady = [&] { return contentOf(display).endsWith('\n'); };
        if (!waitFor([&] { return isReady() || !process->isRunning(); }, limit) || !isReady()) {
            return failure(QStringLiteral("Xvfb did not start: %1")
                               .arg(QString::fromLocal8Bit(process->output())));
        }
        XvfbServer server;
        server.process_ = std::move(*process);
        server.displayName_ = u':' + QString::fromLatin1(contentOf(display).trimmed());
        return server;
    }
    static Result<XvfbServer> start() { return start(Options{}); }

    /** For DISPLAY, such as ":5". */
    QString displayName() const { return displayName_; }
    pid_t pid() const { return process_.pid(); }

    /** For programs on this server. */
    QProcessEnvironment environment() const { return environmentOf(displayName_); }

    /** Runs a program on this display until it ends. It must succeed. */
    void run(const QString &program, const QStringList &arguments) const
    {
        auto process = required(ChildProcess::start(
            {.program = program, .arguments = arguments, .environment = environment()}));
        if (!process.waitForEnd(std::chrono::seconds(10)) || process.exitCode() != 0) {
            throw Failure(QStringLiteral("%1 failed: %2")
                              .arg(program, QString::fromLocal8Bit(process.output())));
        }
    }

    /** Makes a part of the screen a monitor of the output "screen", or of "none". Needs xrandr. */
    void setMonitor(const QString &name, QRect rectangle, const QString &output) const
    {
        const QString place = QStringLiteral("%1/%1x%2/%2+%3+%4")
                                  .arg(rectangle.width())
                                  .arg(rectangle.height())
                                  .arg(rectangle.x())
                                  .arg(rectangle.y());
        run(QStringLiteral("xrandr"), {QStringLiteral("--setmonitor"), name, place, output});
    }

    /** Ends the server abruptly, as a crash would. */
    void kill() { process_.kill(); }

private:
    XvfbServer() = default;

    ChildProcess process_;
    QString displayName_;
};

} // namespace glimmerpane::testing
