// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProcess.h"

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
    static Result<XvfbServer> start(const Options &options);
    static Result<XvfbServer> start() { return start(Options{}); }

    /** For DISPLAY, such as ":5". */
    QString displayName() const { return displayName_; }
    QSize screenSize() const { return screenSize_; }
    pid_t pid() const { return process_.pid(); }
    bool isRunning() { return process_.isRunning(); }
    QByteArray output() const { return process_.output(); }

    /**
     * Our own environment with DISPLAY set to this server and every other desktop session's
     * variables removed, for a ChildProcess.
     */
    QProcessEnvironment environment() const;

    /** Runs a program of this display to its end; ends the tests if it does not succeed. */
    void run(const QString &program, const QStringList &arguments) const;

    /** Makes a part of the screen a monitor of the output "screen", or of "none". Needs xrandr. */
    void setMonitor(const QString &name, QRect rectangle, const QString &output) const;

    /** Ends the server before the object does, in order or at once as a crash would. */
    void terminate() { process_.terminate(); }
    void kill() { process_.kill(); }

private:
    XvfbServer() = default;

    ChildProcess process_;
    QString displayName_;
    QSize screenSize_;
};

} // namespace glimmerpane::testing
