// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/Result.h"

#include <QImage>
#include <QJsonArray>
#include <QTemporaryDir>

#include <memory>

namespace glimmerpane::testing
{

/**
 * A private sway without hardware, with XWayland and one output, HEADLESS-1, at 0,0. It draws in
 * software. Ends with the object.
 */
class SwayServer
{
public:
    /** Returns once it accepts clients of both kinds. */
    static Result<SwayServer> start(QSize screen = {1280, 720});

    /** For DISPLAY, such as ":5". */
    QString displayName() const { return displayName_; }
    /** For WAYLAND_DISPLAY: a path. */
    QString socket() const { return socket_; }
    /** For programs in this session. */
    QProcessEnvironment environment() const;

    /** Has sway carry out a command, as swaymsg does. */
    Result<void> command(const QString &text) const;
    /** Its answer to a question such as "get_outputs". */
    QJsonArray ask(const QString &question) const;

    QStringList outputNames() const;
    /** Where an output is in the desktop; empty if there is none of that name. */
    QRect outputPlace(const QString &name) const;

    enum class Pointer {
        Hidden,
        Shown,
    };
    /** What grim reads of a rectangle of the desktop; null while outputs come and go. */
    QImage screenshot(QRect rectangle, Pointer pointer = Pointer::Hidden) const;

private:
    SwayServer() = default;
    QString run(const QString &program, const QStringList &arguments, QByteArray *output) const;

    std::unique_ptr<QTemporaryDir> folder_;
    ChildProcess process_;
    QString displayName_;
    QString socket_;
    QString ipcSocket_;
};

} // namespace glimmerpane::testing
