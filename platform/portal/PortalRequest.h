// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Answer.h"
#include "platform/bus/BusSignal.h"

#include <QVariantMap>

#include <utility>

namespace glimmerpane::portal
{

using PortalAnswer = std::expected<QVariantMap, Error>;

/** The portal's interface for recording the screen. */
const BusObject &screenCast();

/**
 * Requests to an interface of the portal, one at a time. Each is answered by a signal, which comes
 * when the user has decided. They are described in org.freedesktop.portal.Request.xml and
 * org.freedesktop.portal.ScreenCast.xml. The texts of errors are about recording the screen. Main
 * thread.
 */
class PortalRequests
{
public:
    explicit PortalRequests(BusObject portal = screenCast())
        : portal_(std::move(portal))
    {
    }

    /** `arguments` are those before the options. */
    QCoro::Task<PortalAnswer> ask(QString method, QVariantList arguments, QVariantMap options);

    /** Withdraws the request that waits for an answer; it ends as cancelled, as later ones do. */
    void withdraw();

private:
    struct Waiting {
        BusObject request;
        std::shared_ptr<Answer<PortalAnswer>> answer;
    };

    const BusObject portal_;
    std::optional<Waiting> waiting_;
    bool isWithdrawn_ = false;
};

} // namespace glimmerpane::portal
