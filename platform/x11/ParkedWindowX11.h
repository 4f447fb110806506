// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ViewerWatch.h"
#include "platform/x11/OffscreenWindowX11.h"

#include <optional>
#include <span>

namespace glimmerpane::x11
{

/**
 * A managed window for KWin on Wayland, which offers only such windows to viewers, and lets them go
 * off the screen. It is off every display, but for one pixel in the corner farthest from the area:
 * Xwayland gets to draw a window only as often as KWin draws one of the displays that it is on. It
 * is an ordinary entry of the taskbar, because viewers are not offered others. It lies below
 * everything, takes no input, and is transparent until it is in its place.
 */
class ParkedWindowX11 : public OffscreenWindowX11
{
public:
    /**
     * `area` is where it must not be seen, root pixels; its content has the same size. `watcher`
     * tells of viewers; without one, more is drawn for those that may come.
     */
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QRect area,
                                                                      ViewerWatcher watcher);

    ParkedWindowX11(ExtendedConnection opened, QRect area, ViewerWatcher watcher);

    void orderFront() override;
    void orderOut() override;

protected:
    /** Creates the window, unmapped. */
    std::expected<void, Error> prepare(const QString &title, std::span<const AtomName> states);
    /** Where it is hardly seen; root pixels. */
    virtual QPoint choosePlace() const;
    /** Asks the manager to move it there; root pixels. */
    virtual void move(QPoint place);
    /** It is in its place. */
    virtual void settled();
    bool isSettled() const { return isSettled_; }
    /** Something else to draw when one pixel of it is drawn anew for viewers. */
    virtual void touchMore() { }
    void handle(const xcb_generic_event_t &event) override;

private:
    void setTransparent(bool isTransparent);
    void followState();
    void checkPlace();
    void settle();

    const QRect area_;
    const ViewerWatcher watcher_;
    std::span<const AtomName> states_; ///< _NET_WM_STATE_...
    QPoint wanted_; ///< root pixels, as the next
    std::optional<QPoint> seen_; ///< since it was managed
    bool isManaged_ = false;
    bool isSettled_ = false; ///< in its place since it was managed
};

} // namespace glimmerpane::x11
