// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/CaptureThread.h"
#include "platform/FileDescriptor.h"
#include "platform/x11/CaptureLoop.h"

#include <memory>

namespace glimmerpane::x11
{

/** A capture stream: runs a CaptureLoop on its own thread, "captureQueue". */
class CaptureStreamX11 final : public CaptureStream
{
public:
    /** `background` waits for the thread when the stream has been stopped. */
    CaptureStreamX11(const ContentFilter &filter, const StreamConfiguration &configuration,
                     std::shared_ptr<QThreadPool> background);
    ~CaptureStreamX11() override;

    QCoro::Task<std::expected<void, Error>> startCapture(Handlers handlers) override;
    void stopCapture() override;
    void returnSampleBuffer(const SampleBuffer &sample) override;
    void invalidate() override;
    bool move(const Rect &area) override;

private:
    bool send(const CaptureOrder &order) const;

    const CaptureSource source_;
    FileDescriptor orderWriter_;
    std::shared_ptr<const FileDescriptor> orderReader_; ///< outlives the thread's use of the pipe
    CaptureThread thread_;
};

} // namespace glimmerpane::x11
