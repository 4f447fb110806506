// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OffscreenWindow.h"
#include "platform/x11/Connection.h"
#include "platform/x11/EventReader.h"
#include "platform/x11/ServerId.h"

#include <expected>
#include <memory>

namespace glimmerpane::x11
{

/**
 * An override-redirect window, which no window manager moves or lists, but which has what window
 * pickers look for: WM_STATE, a title and the type "normal". Redirected automatically through
 * Composite, so that its picture exists although it is on no display.
 */
class OffscreenWindowX11 : public OffscreenWindow
{
public:
    static std::expected<std::unique_ptr<OffscreenWindow>, Error> create(const QString &title,
                                                                         QPoint origin, QSize size);

    OffscreenWindowX11(ExtendedConnection opened, QSize size);
    Q_DISABLE_COPY_MOVE(OffscreenWindowX11)

    std::uint32_t id() const override { return window_.get(); }
    QSize size() const override { return size_; }
    bool isVisible() const override { return isVisible_; }
    void orderFront() override;
    void orderOut() override;
    void setFrameOrigin(QPoint origin) override;

protected:
    std::expected<void, Error> createWindow(QPoint origin, bool isManaged);
    /** Sets its title and type, and that it handles close requests itself. */
    void describe(const QString &title);
    virtual void handle(const xcb_generic_event_t &event);

    const Connection connection_;
    const Extensions extensions_;
    const QSize size_;
    Window window_;
    EventReader events_;
    bool isVisible_ = false;
};

} // namespace glimmerpane::x11
