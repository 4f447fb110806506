// SPDX-License-Identifier: MIT
#pragma once

#include "rig/ChildProcess.h"
#include "rig/SessionBus.h"

#include <QTemporaryDir>

#include <optional>

namespace glimmerpane::testing
{

/**
 * What a private session on Wayland needs besides its compositor: folders, PipeWire and two message
 * buses. While it exists, this process's clients of X and PipeWire reach its servers by default.
 * Everything it started ends with the object.
 */
class WaylandDesktop
{
public:
    ~WaylandDesktop();
    Q_DISABLE_COPY_MOVE(WaylandDesktop)

    /** For a program of the session. */
    const QProcessEnvironment &environment() const { return environment_; }
    QString displayName() const { return environment_.value(QStringLiteral("DISPLAY")); }
    /** Ends the service that carries the pictures. */
    void endPipeWire() { pipeWire_.terminate(); }
    QString runtimeFile(const QString &name) const
    {
        return scratch_.filePath(QStringLiteral("run/") + name);
    }

protected:
    /** `desktop` is for XDG_CURRENT_DESKTOP. */
    explicit WaylandDesktop(const QString &desktop);

    /** For the compositor, whose socket is to be called "wayland-0". */
    QProcessEnvironment compositorEnvironment() const;
    QString busAddress() const { return sessionBus_->address(); }
    void setVariable(const char *name, const QString &value);
    /** Returns once the X server accepts clients. */
    void enterDisplay(const QString &display, const QString &authority);

private:
    void makeFolders();
    void startPipeWire();

    QTemporaryDir scratch_;
    QProcessEnvironment environment_;
    std::optional<SessionBus> systemBus_;
    std::optional<SessionBus> sessionBus_;
    ChildProcess pipeWire_;
    ChildProcess sessionManager_; ///< of PipeWire
};

} // namespace glimmerpane::testing
