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

/** Keeps the capture area as JSON in a settings file, which it writes on a thread of its own. */
class FrameRepository : public QObject, public FrameRepositoryProtocol
{
    Q_OBJECT

public:
    /** Typing rests when nothing was saved for that long. */
    explicit FrameRepository(SettingsFile file,
                             std::chrono::milliseconds typingPause
                             = std::chrono::milliseconds(300));
    /** Writes what still waits. */
    ~FrameRepository() override;

    std::optional<CaptureFrame> load() override;
    void save(const CaptureFrame &frame, Pace pace) override;
    QFuture<void> allWritten() override;

    /** Blocks until all is written, but at most twice for the limit (milliseconds; -1 for none). */
    void finish(int limit = -1);

private:
    void write();

    const SettingsFile file_;
    QTimer typingPause_; ///< runs while what waits may be half a number
    QThreadPool thread_; ///< the only one that writes
    QFutureWatcher<void> writing_;
    std::optional<QByteArray> waiting_; ///< the newest area, unless it is being written
    std::vector<QPromise<void>> askers_; ///< who wants to know when all is written
};

} // namespace glimmerpane
