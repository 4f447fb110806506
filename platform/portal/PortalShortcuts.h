// SPDX-License-Identifier: MIT
#pragma once

#include "services/Error.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <expected>
#include <functional>
#include <memory>
#include <vector>

namespace glimmerpane
{
class BusOwnerWatch;
class BusSignal;
} // namespace glimmerpane

namespace glimmerpane::portal
{

class PortalRequests;
class PortalSession;

/**
 * Keys that reach the program whichever window has the focus, by the desktop's portal, as in
 * org.freedesktop.portal.GlobalShortcuts.xml. They end with the object. Main thread.
 */
class PortalShortcuts : public QObject
{
    Q_OBJECT

public:
    using Result = std::expected<void, Error>;

    /** Something that the user can give keys to. */
    struct Shortcut {
        QString id;
        QString description; ///< for the user
    };

    PortalShortcuts();
    ~PortalShortcuts() override;

    /** The error is `unavailable` on desktops without such a portal. */
    QCoro::Task<Result> open();
    /**
     * Has the desktop ask the user for keys, unless it knows the answer. Finishes when they are
     * set, or with an error that is `cancelled` if the user does not want any.
     */
    QCoro::Task<Result> bind(std::vector<Shortcut> shortcuts);

Q_SIGNALS:
    /** Keys have been pressed. */
    void pressed(const QString &id);
    /** There are no shortcuts any more: the portal has left the bus, or has ended the session. */
    void ended(bool portalHasLeft);

private:
    const std::shared_ptr<PortalRequests> requests_;
    std::unique_ptr<PortalSession> session_;
    std::unique_ptr<BusSignal> activated_;
    std::unique_ptr<BusOwnerWatch> portal_;
};

} // namespace glimmerpane::portal
