// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"
#include "services/ServiceInterfaces.h"

#include <QObject>

#include <memory>

namespace glimmerpane
{

class FrameSelectorWindowController;
class WindowLifecycleDelegate;

/** Owns the secondary windows while they are open. Main thread. */
class AppCoordinator : public QObject, public WindowCoordinatorProtocol
{
public:
    explicit AppCoordinator(Backend backend);
    ~AppCoordinator() override;

    std::expected<void, Error> showFrameSelector(std::optional<CaptureFrame> initialFrame,
                                                 FrameHandler onConfirm, Handler onCancel) override;
    void closeFrameSelector() override;
    std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) override;
    void closeSharingWindow() override;
    bool isSharingWindowVisible() const override;

private:
    const Backend backend_;
    std::shared_ptr<FrameSelectorWindowController> frameSelectorController_; ///< while it is open
    std::shared_ptr<WindowLifecycleDelegate> frameSelectorDelegate_;
    std::shared_ptr<SharingWindow> sharingWindow_; ///< may be hidden
};

} // namespace glimmerpane
