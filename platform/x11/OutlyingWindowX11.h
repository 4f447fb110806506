// SPDX-License-Identifier: MIT
#pragma once

#include "platform/x11/ParkedWindowX11.h"

namespace glimmerpane::x11
{

/**
 * A managed window for mutter on Wayland, which offers only such windows to viewers. It is wholly
 * off the screen: mutter lets no ordinary window go there, but leaves one that was there as a dock.
 * It is lowered again when the user activates it.
 */
class OutlyingWindowX11 : public ParkedWindowX11
{
public:
    /** `watcher` tells of viewers; without one, more is drawn for those that may come. */
    static std::expected<std::unique_ptr<OutputWindow>, Error> create(const QString &title,
                                                                      QSize size,
                                                                      ViewerWatcher watcher);

    OutlyingWindowX11(ExtendedConnection opened, QSize size, ViewerWatcher watcher);

    void orderFront() override;
    void orderOut() override;

protected:
    QPoint choosePlace() const override;
    void move(QPoint place) override;
    void settled() override;
    void touchMore() override;
    void handle(const xcb_generic_event_t &event) override;

private:
    void createDot();
    void lower();
    void followStack();
    void follow(bool isOnTop);

    Colormap colormap_;
    Window dot_; ///< transparent, one pixel, on the screen
    bool isLow_ = false; ///< it has been below another window since it was lowered
};

} // namespace glimmerpane::x11
