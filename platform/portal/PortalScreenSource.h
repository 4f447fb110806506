// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenSource.h"
#include "platform/pipewire/StreamEnvironment.h"
#include "platform/portal/PointerWish.h"
#include "services/RestoreTokenStore.h"

#include <QObject>

#include <memory>

namespace glimmerpane::portal
{

class PortalGrant;
class PortalRequests;

/** Whether this session has a portal that records monitors. Waits for it. */
bool isScreenCastThere();

/**
 * The screen of any desktop that has xdg-desktop-portal. The user chooses the monitor in the
 * desktop's own dialog when sharing starts; a token saves the question from then on. The permission
 * is good for one stream.
 */
class PortalScreenSource : public QObject, public ScreenSource
{
    Q_OBJECT

public:
    /** Without a store, the question comes each time. */
    PortalScreenSource(std::shared_ptr<Displays> displays,
                       std::shared_ptr<RestoreTokenStore> tokens, PointerWish pointer,
                       pipewire::StreamEnvironment environment);
    ~PortalScreenSource() override;
    Q_DISABLE_COPY_MOVE(PortalScreenSource)

    QCoro::Task<std::expected<ShareableContent, Error>> shareableContent(Rect area) override;
    void withdrawRequest() override;
    std::unique_ptr<CaptureStream> makeCaptureStream(
        const ContentFilter &filter, const StreamConfiguration &configuration) override;

private:
    QCoro::Task<std::expected<PortalGrant, Error>> ask(QString token);

    const std::shared_ptr<Displays> displays_;
    const std::shared_ptr<RestoreTokenStore> tokens_;
    const PointerWish pointer_;
    std::shared_ptr<PortalRequests> requests_; ///< while they are made
    std::unique_ptr<PortalGrant> grant_; ///< not used yet
    const pipewire::StreamEnvironment environment_; ///< shared with the streams
};

} // namespace glimmerpane::portal
