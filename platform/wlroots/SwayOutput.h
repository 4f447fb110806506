// SPDX-License-Identifier: MIT
#pragma once

#include "platform/wlroots/OutputRecord.h"
#include "platform/wlroots/SwayConnection.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace glimmerpane::wlroots
{

/**
 * An output of sway that no display shows, far from all others, so that the pointer cannot get
 * there. Its workspace gives the focus back when it gets it. Removed with the object; where sway
 * cannot remove outputs (before 1.8), it stays and is used again. Main thread.
 */
class SwayOutput : public QObject
{
public:
    /** Of this size in pixels. Waits for sway. */
    static std::expected<std::unique_ptr<SwayOutput>, Error> create(QSize size);

    /** Removes what a run that crashed has left behind. Waits for sway. */
    static void removeAbandoned();

    ~SwayOutput() override;
    Q_DISABLE_COPY_MOVE(SwayOutput)

    const QString &name() const { return name_; }

    /** In the desktop. */
    QRect place() const { return place_; }

private:
    SwayOutput(SwayConnection sway, QString name, OutputRecord record, QRect place,
               std::vector<SwayOutputState> others);
    std::expected<void, Error> arrange() const;
    bool isArranged() const;
    std::expected<void, Error> watch();
    void readEvent();

    const SwayConnection sway_;
    const QString name_;
    const OutputRecord record_;
    const QRect place_;
    const std::vector<SwayOutputState> others_; ///< the outputs that were there before
    std::optional<SwayConnection> events_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace glimmerpane::wlroots
