// SPDX-License-Identifier: MIT
#pragma once

#include "platform/portal/PortalRequest.h"

#include <functional>

namespace glimmerpane::portal
{

/** Has the portal make a session. `requests` must outlive the task. The result is its path. */
QCoro::Task<std::expected<QString, Error>> createSession(PortalRequests &requests);

/**
 * A session of the portal, as in org.freedesktop.portal.Session.xml; ends with the object. Main
 * thread.
 */
class PortalSession
{
public:
    /** Takes what createSession() gives. */
    explicit PortalSession(const QString &path);
    Q_DISABLE_COPY_MOVE(PortalSession)
    ~PortalSession();

    /** As the portal's methods take it. */
    QVariant handle() const;
    /** Called when the portal ends the session, at once if it already has. */
    void onClosed(std::function<void()> closed);

private:
    const BusObject object_;
    std::function<void()> onClosed_;
    bool isClosed_ = false;
    const BusSignal closed_;
};

} // namespace glimmerpane::portal
