// SPDX-License-Identifier: MIT
#pragma once

#include "model/MainViewModel.h"
#include "platform/Backend.h"
#include "services/CaptureFrame.h"
#include "storage/SwitchFile.h"

#include <QCoroTask>
#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include <expected>
#include <memory>
#include <optional>
#include <vector>

namespace glimmerpane
{

/**
 * The frame around the area while it is shared, if the user wants one, and the drag of its handle,
 * which moves the area. The others never see it: it is not drawn where the area is, may still be
 * seen, or is about to be. Main thread.
 */
class AreaFrame : public QObject
{
    Q_OBJECT

public:
    /** On or off as stored. The model must outlive this object. */
    AreaFrame(MainViewModel &model, Backend backend, SettingsFile file);
    ~AreaFrame() override;

    /** Whether a frame is shown while the area is shared. */
    bool isOn() const { return marks_ != nullptr; }
    /** The result finishes when it is stored. On failure nothing has changed. */
    std::expected<QFuture<void>, Error> turn(bool on);

    /** Has the model move the area, when the frame has made room there. */
    QCoro::Task<SharingSession::Result> move(CaptureFrame frame, bool saves);

    /** For a window of the program's, whose palette the frame follows. */
    bool eventFilter(QObject *window, QEvent *event) override;

Q_SIGNALS:
    /** isOn(), perhaps as before. */
    void turned(bool isOn);

private:
    /** Pixels of the desktop that the others may see for some time. */
    struct Seen {
        QRect place;
        QDeadlineTimer until;
    };

    std::expected<void, Error> make();
    void areaChanged();
    void lookAtDisplays();
    void refresh();
    void keepClear(const QRect &place);
    void forget();
    QRect placeOf(const CaptureFrame &frame) const;

    void handle(const PointerEvent &event);
    void interruptDrag(const QRect &place);
    CaptureFrame draggedTo(QPoint pointer) const;
    QCoro::Task<> follow();

    MainViewModel &model_;
    const Backend backend_;
    SwitchFile file_;
    std::unique_ptr<AreaMarks> marks_; ///< null while it is off
    MainDisplay main_;
    QRegion desktop_; ///< desktop pixels
    QRect area_; ///< the shared one, desktop pixels; empty if there is none
    std::vector<QRect> coming_; ///< where it is being moved to, desktop pixels
    std::vector<Seen> seen_;
    QTimer forgetting_;
    struct Drag {
        CaptureFrame frame; ///< where it began
        QPoint pointer; ///< desktop pixels
    };
    std::optional<Drag> drag_;
    QRect handle_; ///< where it is, or was when the drag began; desktop pixels
    std::optional<CaptureFrame> goal_; ///< of the drag; followed until it is reached
    bool isFollowing_ = false;
};

} // namespace glimmerpane
