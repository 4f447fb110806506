// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/OffscreenWindowX11.h"

namespace glimmerpane::x11
{

/**
 * An offscreen window that the window manager manages and lists. Most managers pull it back onto
 * the screen, so it is hidden there: by giving its frame an empty shape, or else by zero opacity.
 * It takes no input, lies below everything, and is on every desktop.
 */
class ManagedWindowX11 : public OffscreenWindowX11
{
public:
    /** Creates an unlisted window, with a warning, if no manager lists windows or it tiles them. */
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QSize size);

    using OffscreenWindowX11::OffscreenWindowX11;

    void orderFront() override;
    void orderOut() override;

protected:
    void handle(const xcb_generic_event_t &event) override;

private:
    void describeToManager();
    void makeTransparent();
    void watchCompositor();
    void moveAway();
    void setHiddenByServer(bool hidden);
    void hideFrame();
    void hideAgain();
    bool isSeen() const;
    void show();

    QPoint origin_;
    xcb_atom_t wmState_ = XCB_ATOM_NONE;
    bool isOrderedIn_ = false;
    bool isManaged_ = false;
    bool isPlaced_ = false; ///< and the manager was asked to place it
    bool isFramed_ = false; ///< the manager has put a frame window around it
    bool isHiddenByServer_ = false; ///< redirected manually, and we do not draw it
    bool isShown_ = false; ///< as an ordinary window, because it cannot be hidden
};

} // namespace glimmerpane::x11
