// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OutputWindow.h"
#include "platform/x11/Connection.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/RedirectionWatch.h"
#include "platform/x11/ServerId.h"
#include "platform/x11/WindowTouch.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane::x11
{

/**
 * An override-redirect window, which no window manager moves or lists, but which has what window
 * pickers look for: WM_STATE, a title and the type "normal". Redirected automatically through
 * Composite, so that its picture exists although it is on no display.
 */
class OffscreenWindowX11 : public OutputWindow
{
public:
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QSize size);

    /**
     * The same at a place that a display shows (root pixels). It never takes the keyboard: wlroots
     * lets an unmanaged window have that unless its type says otherwise, as "utility" does.
     */
    static std::expected<std::unique_ptr<OutputWindow>, Error> createAt(const QString &title,
                                                                        QRect frame);

    OffscreenWindowX11(ExtendedConnection opened, QSize size);
    Q_DISABLE_COPY_MOVE(OffscreenWindowX11)

    bool isVisible() const override { return isVisible_; }
    void orderFront() override;
    void orderOut() override;
    std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer() override;
    std::optional<bool> isWatched() const override;

protected:
    std::expected<void, Error> createWindow(QPoint origin, bool isManaged);
    /** Root pixels. */
    void setFrameOrigin(QPoint origin);
    /** Sets its title and type, and that it handles close requests itself. */
    void describe(const QString &title, AtomName type = "_NET_WM_WINDOW_TYPE_NORMAL");
    virtual void handle(const xcb_generic_event_t &event);
    /** Makes it visible; waits for the server. */
    void map();
    /** From now on, if the programs that read the window are clients of this X server. */
    void watchViewers();
    /** From now on, if a compositor records it for its viewers. See WindowTouch. */
    void touchForViewers(const ViewerWatcher &watcher, std::function<void()> also = {});
    void stopTouching() { touch_.reset(); }

    const Connection connection_;
    const Extensions extensions_;
    const QSize size_;
    Window window_;
    EventReader events_;
    bool isVisible_ = false;

private:
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QRect frame, AtomName type);

    void tellWatched() const;

    QPoint place_; ///< root pixels
    std::uint32_t mapped_ = 0; ///< the number of the latest request to map it
    std::unique_ptr<RedirectionWatch> viewers_; ///< null if nobody tells of them
    std::optional<WindowTouch> touch_;
};

/** A position off every display for a window of `size`; root pixels. */
QPoint unseenOrigin(QSize size);

} // namespace glimmerpane::x11
