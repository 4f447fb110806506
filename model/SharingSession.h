// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Backend.h"
#include "services/ServiceInterfaces.h"

#include <QObject>

#include <expected>
#include <memory>
#include <optional>

namespace glimmerpane
{

/**
 * What a sharing session shows: which area, and whether it is paused. It lasts as long as the
 * output window. The first capture is started by its owner, later ones by this object. Main thread.
 */
class SharingSession : public QObject
{
    Q_OBJECT

public:
    using Result = std::expected<void, Error>;

    /** The references must outlive this object. */
    SharingSession(CaptureServiceProtocol &capture, const WindowCoordinatorProtocol &windows,
                   Backend backend);

    /** A session begins, whose capture of `frame` into `window` is being started. */
    void open(const CaptureFrame &frame, std::shared_ptr<SharingWindow> window);
    /** The first capture runs now, unless it has been paused. */
    void started();
    /** The session is over. The capture is stopped by the owner. */
    void close();

    /** The area that is shown, or would be if it were not paused; null before it has started. */
    std::optional<CaptureFrame> frame() const;
    /** True until a capture runs again. */
    bool isPaused() const { return state_ == State::Paused || state_ == State::Resuming; }

    /**
     * Shows another area, which need not be of the same size, in the same window. If it cannot be
     * shared, the previous one goes on. Can be called at any rate: an area that is superseded
     * before it could be shown is left out, and its call succeeds at once. During a pause, it is
     * shown when that ends.
     */
    QCoro::Task<Result> move(CaptureFrame frame);
    /** When this returns, nothing of the screen is shown any more. */
    Result pause(PausePicture picture);
    /** On failure, the session is still paused. */
    QCoro::Task<Result> resume();

Q_SIGNALS:
    void frameChanged();
    void pausedChanged();

private:
    enum class State {
        Closed,
        Starting,
        Running,
        Paused,
        Resuming,
    };

    bool isOpen() const; ///< closing the output window counts at once
    void setState(State state);
    void setFrame(const CaptureFrame &frame);
    void abandon();
    QCoro::Task<Result> restart(CaptureFrame frame, std::shared_ptr<SharingWindow> window);

    CaptureServiceProtocol &capture_;
    const WindowCoordinatorProtocol &windows_;
    const Backend backend_;
    State state_ = State::Closed;
    CaptureFrame frame_;
    std::optional<CaptureFrame> goal_; ///< of a move that is not finished
    std::weak_ptr<SharingWindow> window_;
    int step_ = 0; ///< counts what makes a pending move or resumption pointless
};

} // namespace glimmerpane
