// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CaptureStream.h"
#include "platform/x11/CaptureLoop.h"
#include "platform/x11/FileDescriptor.h"

#include <QThread>

#include <memory>

namespace glimmerpane::x11
{

/** A capture stream: runs a CaptureLoop on its own thread, "captureQueue". */
class CaptureStreamX11 final : public CaptureStream
{
public:
    CaptureStreamX11(const ContentFilter &filter, const StreamConfiguration &configuration);
    ~CaptureStreamX11() override;

    std::expected<void, Error> startCapture(Handlers handlers) override;
    void stopCapture() override;
    void returnSampleBuffer(const SampleBuffer &sample) override;
    void invalidate() override;

private:
    void redraw(QRect rectangle) const;

    const CaptureSource source_;
    FileDescriptor redrawReader_;
    FileDescriptor redrawWriter_;
    std::unique_ptr<QThread> thread_;
};

} // namespace glimmerpane::x11
