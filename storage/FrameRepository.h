// SPDX-License-Identifier: MIT
#pragma once

#include "services/FrameRepositoryProtocol.h"
#include "storage/SettingsFile.h"

#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QThreadPool>
#include <QTimer>

#include <chrono>
#include <vector>

namespace glimmerpane
{

/** Stores the capture area as JSON in a settings file, which is written on a separate thread. */
class FrameRepository : public QObject, public FrameRepositoryProtocol
{
    Q_OBJECT

public:
    /** Typing counts as paused when nothing was saved for this long. */
    explicit FrameRepository(SettingsFile file,
                             std::chrono::milliseconds typingPause = std::chrono::seconds(1));
    /** Writes anything still pending. */
    ~FrameRepository() override;

    std::optional<CaptureFrame> load() override;
    void save(const CaptureFrame &frame, Pace pace) override;
    QFuture<void> allWritten() override;

    /** Blocks until everything is written, at most twice the limit (milliseconds; -1 for none). */
    void finish(int limit = -1);

private:
    void write();

    const SettingsFile file_;
    QTimer typingPause_; ///< runs while the pending area may be half-typed
    QThreadPool thread_; ///< the only thread that writes
    QFutureWatcher<void> writing_;
    std::optional<QByteArray> waiting_; ///< the latest area, until its write begins
    std::vector<QPromise<void>> askers_; ///< callers waiting until everything is written
};

} // namespace glimmerpane
