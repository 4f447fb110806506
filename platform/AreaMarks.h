// SPDX-License-Identifier: MIT
#pragma once

#include "platform/OverlayWindow.h"

#include <QColor>
#include <QRect>

#include <expected>
#include <functional>
#include <memory>
#include <vector>

namespace glimmerpane
{

/** A filled rectangle. */
struct Mark {
    QRect place; ///< pixels; the origin depends on the use
    QColor color;

    friend bool operator==(const Mark &, const Mark &) = default;
};

/** What is to be seen around an area. */
struct MarksPicture {
    std::vector<Mark> bars; ///< desktop pixels; they do not overlap
    QRect handle; ///< desktop pixels; empty if there is none
    std::vector<Mark>
        grip; ///< on the handle, whose top-left corner is the origin; later ones above

    friend bool operator==(const MarksPicture &, const MarksPicture &) = default;
};

/**
 * Bars on the desktop, above all other windows and on every workspace, which take neither pointer
 * nor keyboard, and a handle that takes the pointer. Nothing is drawn outside the bars and the
 * handle, not even by the desktop. Hidden until presented. Main thread.
 */
class AreaMarks
{
public:
    virtual ~AreaMarks() = default;

    /**
     * On return, all is where it should be, and nothing was elsewhere in between. A handle that is
     * left out while it is pressed is still dragged; under Xwayland, a pressed one stays where it
     * is.
     */
    virtual void present(const MarksPicture &picture) = 0;
    virtual void hide() = 0;

    // No callback may destroy the marks.
    std::function<void(const PointerEvent &)> onHandle; ///< presses, drags and releases
    std::function<void()> onDisplaysChanged; ///< the marks' pixels may be elsewhere now
};

/** Makes marks. Main thread. */
class AreaMarksMaker
{
public:
    virtual ~AreaMarksMaker() = default;

    virtual std::expected<std::unique_ptr<AreaMarks>, Error> make() = 0;
};

} // namespace glimmerpane
