// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Answer.h"
#include "platform/bus/BusSignal.h"

#include <QVariantMap>

namespace glimmerpane::portal
{

using PortalAnswer = std::expected<QVariantMap, Error>;

/** The portal's interface for recording the screen. */
const BusObject &screenCast();

/**
 * Requests to the portal, one at a time. Each is answered by a signal, which comes when the user
 * has decided. The interfaces are described in org.freedesktop.portal.Request.xml and
 * org.freedesktop.portal.ScreenCast.xml. Main thread.
 */
class PortalRequests
{
public:
    /** `arguments` are those before the options. */
    QCoro::Task<PortalAnswer> ask(QString method, QVariantList arguments, QVariantMap options);

    /** Withdraws the request that waits for an answer; it ends as cancelled, as later ones do. */
    void withdraw();

private:
    struct Waiting {
        BusObject request;
        std::shared_ptr<Answer<PortalAnswer>> answer;
    };

    std::optional<Waiting> waiting_;
    bool isWithdrawn_ = false;
};

} // namespace glimmerpane::portal
