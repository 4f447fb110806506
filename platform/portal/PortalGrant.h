// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"
#include "platform/portal/PointerWish.h"
#include "platform/portal/PortalRequest.h"

#include <QPoint>
#include <QSize>

namespace glimmerpane::portal
{

class PortalSession;

/**
 * The user's permission to record one monitor; the recording ends with the object. Main thread.
 */
class PortalGrant
{
public:
    /**
     * Asks for a monitor; with a token the user need not be asked. `requests` must outlive the
     * task.
     */
    static QCoro::Task<std::expected<PortalGrant, Error>> ask(PortalRequests &requests,
                                                              QString token, PointerWish pointer);

    PortalGrant(PortalGrant &&other) noexcept;
    PortalGrant &operator=(PortalGrant &&other) noexcept;
    ~PortalGrant();

    /** Called when the desktop ends the recording, at the user's wish for one. */
    void onClosed(std::function<void()> closed);

    /** PipeWire's node with the pictures, and a connection on which it is visible. */
    std::uint32_t node = 0;
    FileDescriptor remote;
    /** Where the monitor is, in the compositor's units; absent if the portal does not say. */
    std::optional<QPoint> position;
    std::optional<QSize> size;
    QString token; ///< for the next time; empty if the user does not want that

private:
    explicit PortalGrant(std::unique_ptr<PortalSession> session);

    std::unique_ptr<PortalSession> session_;
};

} // namespace glimmerpane::portal
