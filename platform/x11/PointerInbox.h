// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"

#include <QObject>

#include <optional>

namespace glimmerpane::x11
{

/** Passes pointer events to an overlay's handler; of moves that arrive together, only the last. */
class PointerInbox
{
public:
    /** The overlay must outlive this object. */
    explicit PointerInbox(OverlayWindow &overlay);

    /** The handler may destroy the overlay. */
    void deliver(const PointerEvent &event);
    /** Call after the last of the events that have arrived. */
    void deliverMotion();
    void dropMotion() { motion_.reset(); }

private:
    OverlayWindow &overlay_;
    std::optional<PointerEvent> motion_;
    QObject lives_; ///< as long as this object
};

} // namespace glimmerpane::x11
