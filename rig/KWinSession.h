// SPDX-License-Identifier: MIT
#pragma once

#include "rig/WaylandDesktop.h"

#include <QDBusConnection>
#include <QImage>

namespace glimmerpane::testing
{

/**
 * A private KWin on Wayland without Plasma around it and without hardware: one output, drawn by
 * OpenGL in software. Every program may record the screen, unless Options say otherwise, but before
 * KWin 6 there are no pictures of it, only of windows.
 */
class KWinSession : public WaylandDesktop
{
public:
    struct Options {
        QSize screen{1280, 720};
        /** The folder "share" of what is installed: KWin permits only what its entries ask for. */
        QString installed{};
    };

    explicit KWinSession(const Options &options);
    KWinSession()
        : KWinSession(Options{})
    {
    }
    ~KWinSession();
    Q_DISABLE_COPY_MOVE(KWinSession)

    /** For KWinClient. */
    QString socket() const { return runtimeFile(QStringLiteral("wayland-0")); }
    QString pipeWireSocket() const { return runtimeFile(QStringLiteral("pipewire-0")); }
    int majorVersion() const; ///< 5 or 6
    /** What KWin shows, without the pointer; Format_RGB32. */
    QImage screenshot(const QRect &rectangle) const;

private:
    void writeMenu() const;
    void startKWin(const Options &options);

    ChildProcess kwin_;
    QDBusConnection bus_;
};

} // namespace glimmerpane::testing
