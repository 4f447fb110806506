// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"
#include "services/ServiceInterfaces.h"

#include <QObject>

#include <memory>
#include <optional>
#include <utility>

namespace glimmerpane
{

class FrameSelectorWindowController;
class WindowLifecycleDelegate;

/** Owns the secondary windows while they are open. Main thread. */
class AppCoordinator : public QObject, public WindowCoordinatorProtocol
{
public:
    /** `onOutputActivated`: the user wants to see the output window. */
    AppCoordinator(Backend backend, Handler onOutputActivated);
    ~AppCoordinator() override;

    std::expected<void, Error> showFrameSelector(std::optional<CaptureFrame> initialFrame,
                                                 FrameHandler onConfirm, Handler onCancel) override;
    void closeFrameSelector() override;
    std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) override;
    void closeSharingWindow() override;
    bool isSharingWindowVisible() const override;
    std::optional<bool> isSharingWindowWatched() const override;
    void setOnWatchedChanged(Handler handler) override { onWatchedChanged_ = std::move(handler); }

private:
    const Backend backend_;
    const Handler onOutputActivated_;
    Handler onWatchedChanged_;
    std::shared_ptr<FrameSelectorWindowController> frameSelectorController_; ///< while it is open
    std::shared_ptr<WindowLifecycleDelegate> frameSelectorDelegate_;
    std::shared_ptr<SharingWindow> sharingWindow_; ///< may be hidden
};

} // namespace glimmerpane
