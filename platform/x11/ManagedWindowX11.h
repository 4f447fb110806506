// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/OffscreenWindowX11.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace glimmerpane::x11
{

/**
 * An offscreen window that the window manager manages and lists. Most managers pull it back onto
 * the screen, so it is hidden there: by giving its frame an empty shape, or else by zero opacity.
 * It takes no input, lies below everything, and is on every desktop. It follows the manager by
 * events and awaited replies, so a slow server or manager does not delay the drawing.
 */
class ManagedWindowX11 : public OffscreenWindowX11
{
public:
    /** Creates an unlisted window, with a warning, if no manager lists windows or it tiles them. */
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QSize size);

    ManagedWindowX11(ExtendedConnection opened, QSize size);

    void orderFront() override;
    void orderOut() override;

protected:
    void handle(const xcb_generic_event_t &event) override;

private:
    enum class Stage {
        Withdrawn, ///< not to be on the screen, or not yet
        Requested, ///< the manager does not manage it yet
        Hidden,
        Shown, ///< as an ordinary window, because it cannot be hidden
    };

    void describeToManager();
    void makeTransparent();
    void watchCompositor();
    void moveAway();
    void setRedirection(std::optional<std::uint32_t> request);
    void hide();
    void hideAgain();
    void hideFrame(xcb_window_t inside);
    bool isFramed() const { return parent_ != connection_.root(); }
    bool isDrawn() const; ///< by the server, wherever it is
    void ifSeen(std::function<void()> seen);
    void show();

    QPoint origin_;
    Stage stage_ = Stage::Withdrawn;
    xcb_window_t parent_; ///< the root, or what the manager has put around the window
    bool isComposited_ = false;
    /** The request to redirect it manually, so that the server does not draw it; and nor do we. */
    std::optional<std::uint32_t> redirection_;
};

} // namespace glimmerpane::x11
