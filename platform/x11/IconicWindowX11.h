// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ViewerWatch.h"
#include "platform/x11/OffscreenWindowX11.h"

#include <cstdint>

namespace glimmerpane::x11
{

/**
 * A minimised window. GNOME on Wayland offers only managed windows to viewers, and shows a
 * minimised one to them as it would be on the screen. When the user activates it, it is minimised
 * again at once. It takes no focus.
 */
class IconicWindowX11 : public OffscreenWindowX11
{
public:
    /** `watcher` tells of viewers; without one, more is drawn for those that may come. */
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QSize size,
                                                                      ViewerWatcher watcher);

    IconicWindowX11(ExtendedConnection opened, QSize size, ViewerWatcher watcher);

    void orderFront() override;
    void orderOut() override;

protected:
    void handle(const xcb_generic_event_t &event) override;

private:
    enum class Stage {
        New, ///< nobody has asked for it
        Minimised,
        Activated, ///< and not minimised again yet
    };

    void createDot();
    void minimise();
    void follow(std::uint32_t state);

    const ViewerWatcher watcher_;
    Colormap colormap_;
    Window dot_; ///< transparent, one pixel, on the screen
    Stage stage_ = Stage::New;
};

} // namespace glimmerpane::x11
