// SPDX-License-Identifier: MIT
#pragma once

#include "app/ServiceInterfaces.h"

#include <memory>

namespace glimmerpane
{

class Desktop;

/** Owns the secondary windows while they are open. Main thread. */
class AppCoordinator : public WindowCoordinatorProtocol
{
public:
    /** `desktop` must outlive the coordinator and its windows. */
    explicit AppCoordinator(Desktop &desktop);

    void showFrameSelector(std::optional<CaptureFrame> initialFrame, FrameHandler onConfirm,
                           Handler onCancel) override;
    void closeFrameSelector() override;
    std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) override;
    void closeSharingWindow() override;
    bool isSharingWindowVisible() const override;

private:
    Desktop &desktop_;
    std::shared_ptr<SharingWindow> sharingWindow_; ///< may be held while hidden
};

} // namespace glimmerpane
