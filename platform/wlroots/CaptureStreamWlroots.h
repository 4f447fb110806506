// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/CaptureThread.h"

#include <memory>

namespace glimmerpane::wlroots
{

class CommandPipe;
struct CaptureSource;

/** A capture stream: runs a ScreencopyLoop on its own thread, "captureQueue". */
class CaptureStreamWlroots final : public CaptureStream
{
public:
    /** `background` waits for the thread when the stream has been stopped. */
    CaptureStreamWlroots(const ContentFilter &filter, const StreamConfiguration &configuration,
                         std::shared_ptr<QThreadPool> background);
    ~CaptureStreamWlroots() override;

    QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) override;
    void stopCapture() override;
    void returnSampleBuffer(const SampleBuffer &sample) override;
    void invalidate() override;
    bool move(const Rect &area) override;

private:
    const std::unique_ptr<const CaptureSource> source_;
    std::shared_ptr<CommandPipe> commands_; ///< null before the start
    CaptureThread thread_;
};

} // namespace glimmerpane::wlroots
