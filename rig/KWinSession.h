// SPDX-License-Identifier: MIT
#pragma once

#include "rig/WaylandDesktop.h"

#include <QDBusConnection>
#include <QImage>

namespace glimmerpane::testing
{

/**
 * A private KWin on Wayland without Plasma around it and without hardware: one output, drawn by
 * OpenGL in software. It lets every program record the screen, but has no pictures of it (5.27), so
 * only windows can be recorded.
 */
class KWinSession : public WaylandDesktop
{
public:
    explicit KWinSession(QSize screen = {1280, 720});
    ~KWinSession();
    Q_DISABLE_COPY_MOVE(KWinSession)

    /** For KWinClient. */
    QString socket() const { return runtimeFile(QStringLiteral("wayland-0")); }
    QString pipeWireSocket() const { return runtimeFile(QStringLiteral("pipewire-0")); }
    /** What KWin shows, without the pointer; Format_RGB32. */
    QImage screenshot(const QRect &rectangle) const;

private:
    void startKWin(QSize screen);

    ChildProcess kwin_;
    QDBusConnection bus_;
};

} // namespace glimmerpane::testing
