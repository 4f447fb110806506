// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/OffscreenWindowX11.h"

namespace glimmerpane::x11
{

/**
 * One that the window manager manages and lists. Most managers pull it back onto the screen, so
 * it is hidden there: by an empty shape of the frame that they give it, else by having no opacity.
 * It takes no input, lies below everything, and is on every desktop.
 */
class ManagedWindowX11 : public OffscreenWindowX11
{
public:
    /** An unlisted one, with a line of warning, where no manager lists windows or it tiles them. */
    static std::expected<std::unique_ptr<OffscreenWindow>, Error> create(const QString &title,
                                                                         QPoint origin, QSize size);

    using OffscreenWindowX11::OffscreenWindowX11;

    void orderFront() override;
    void orderOut() override;
    void setFrameOrigin(QPoint origin) override;

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
    bool isPlaced_ = false; ///< and the manager has been asked to place it
    bool isFramed_ = false; ///< the manager has put a window of its own around it
    bool isHiddenByServer_ = false; ///< nobody but us is to draw it, and we do not
    bool isShown_ = false; ///< as a window like others, because it cannot be hidden
};

} // namespace glimmerpane::x11
