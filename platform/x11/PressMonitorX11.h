// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PressMonitor.h"
#include "platform/x11/Connection.h"
#include "platform/x11/EventReader.h"

#include <QByteArray>
#include <QFutureWatcher>
#include <QPoint>

#include <functional>
#include <memory>
#include <optional>

namespace glimmerpane::x11
{

/**
 * Uses raw button events of XInput 2. They arrive from every device, even while another client has
 * grabbed the pointer, but contain neither position nor window. The server is asked for those in
 * the background, as its replies may be slow while it draws.
 */
class PressMonitorX11 : public PressMonitor
{
public:
    /** `pressed` gets the pointer's position, root pixels. Null if the server lacks XInput. */
    static std::unique_ptr<PressMonitor> create(std::function<void(QPoint)> pressed);
    ~PressMonitorX11() override;
    Q_DISABLE_COPY_MOVE(PressMonitorX11)

private:
    PressMonitorX11(Connection connection, const Extensions &extensions,
                    std::function<void(QPoint)> pressed);
    void count(const xcb_generic_event_t &event);
    void look();
    void tell();
    std::optional<QPoint> placeOfPress() const;
    bool isOurs(xcb_window_t topLevel, QPoint place) const;
    bool belongsToUs(xcb_window_t window) const;

    const Connection connection_;
    const std::uint8_t xinputOpcode_;
    const std::function<void(QPoint)> pressed_;
    const QByteArray host_;
    int presses_ = 0; ///< not yet handled
    int lookedFor_ = 0; ///< whose position is being requested
    bool isLooking_ = false;
    QFutureWatcher<std::optional<QPoint>> looking_;
    EventReader events_;
};

} // namespace glimmerpane::x11
