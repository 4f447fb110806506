// SPDX-License-Identifier: MIT
#pragma once

#include "rig/GnomeScreenCast.h"
#include "rig/WaylandDesktop.h"

#include <QDBusConnection>
#include <QSize>

#include <cstddef>
#include <optional>
#include <vector>

namespace glimmerpane::testing
{

/**
 * A private GNOME session on Wayland, without hardware: gnome-shell with Xwayland, PipeWire, and
 * two message buses. It shows an empty desktop, not the overview.
 */
class GnomeSession : public WaylandDesktop
{
public:
    struct Options {
        /** Pixels; from left to right, with the connectors Meta-0, Meta-1 and so on. */
        std::vector<QSize> monitors{{1280, 720}};
        /** GSettings, in GLib's key file format, such as "[org/gnome/mutter]\nkey=value\n". */
        QByteArray settings{};
        /** Of the first monitor, if a layout in points is among the settings; may be fractional. */
        double scale = 1;
    };

    explicit GnomeSession(const Options &options);
    GnomeSession()
        : GnomeSession(Options{})
    {
    }
    ~GnomeSession();
    Q_DISABLE_COPY_MOVE(GnomeSession)

    const QDBusConnection &bus() const { return *bus_; }
    pid_t shellProcess() const { return shell_.pid(); }
    /** Xwayland's. */
    pid_t serverProcess() const;
    /** What the shell has printed. */
    QByteArray shellOutput() const { return shell_.output(); }

    struct ListedWindow {
        quint64 id = 0;
        QString title;
        QString application; ///< "app-id": its desktop entry, or window:N
        QString windowClass; ///< the second one of WM_CLASS
        bool isHidden = false; ///< minimised
        bool hasFocus = false;
    };
    /** What the portal's dialog lists. */
    std::vector<ListedWindow> windows() const;
    std::optional<ListedWindow> window(const QString &title) const;

    GnomeStream recordMonitor(int index = 0,
                              GnomeScreenCast::Pointer pointer
                              = GnomeScreenCast::Pointer::Hidden) const;
    GnomeStream recordWindow(quint64 id) const;
    GnomeInput input(int monitor = 0) const;

    /** The portal's dialog, where it is on a monitor of 1280x720 points. */
    struct PortalDialog {
        QRect place;
        QPoint cancel;
        QPoint share;
        QPoint secondWindow; ///< in the list of windows
        std::optional<QPoint> firstMonitor; ///< null if it is chosen already
        QPoint secondMonitor; ///< of two, the right one of 800x600
    };
    PortalDialog portalDialog() const;
    bool isPortalDialogShown() const;

    bool isOverviewShown() const;
    void showOverview(bool isShown) const;

private:
    QVariant shellProperty(const char *name) const;
    void writeSettings(const QByteArray &settings);
    void writeMonitor(const QSize &monitor, double scale);
    void startShell(const std::vector<QSize> &monitors);
    void joinBus();
    void findDisplay();

    const std::size_t monitors_;
    ChildProcess shell_;
    std::optional<QDBusConnection> bus_;
};

} // namespace glimmerpane::testing
