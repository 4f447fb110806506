// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Geometry.h"
#include "services/Error.h"

#include <QCoroTask>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>

namespace glimmerpane::gnome
{

/** Whether this session has GNOME's screen-cast service. Waits for the bus. */
bool isScreenCastThere();

/**
 * A recording of one rectangle of the screen by the session's own shell, which shows that it is
 * running and lets the user stop it. No question is asked. It ends with the object. Main thread.
 */
class GnomeRecording
{
public:
    /** `closed` is called when the shell ends the recording, at the user's wish for one. */
    static QCoro::Task<std::expected<GnomeRecording, Error>> start(QRect area, bool showsCursor,
                                                                   std::function<void()> closed);

    GnomeRecording(GnomeRecording &&other) noexcept;
    GnomeRecording &operator=(GnomeRecording &&other) noexcept;
    ~GnomeRecording();

    /** PipeWire's node with the pictures. */
    std::uint32_t node() const { return node_; }

private:
    class Session;

    explicit GnomeRecording(std::unique_ptr<Session> session);

    std::unique_ptr<Session> session_;
    std::uint32_t node_ = 0;
};

} // namespace glimmerpane::gnome
