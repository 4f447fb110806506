// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Result.h"

#include <QPoint>
#include <QSize>

#include <memory>

struct wl_display;
struct zwlr_virtual_pointer_v1;

namespace glimmerpane::testing
{

/** A pointer device of a wlroots compositor. Every call returns after the compositor has seen it.
 */
class VirtualPointer
{
public:
    /** Plugs one in; `socket` is a path, positions are pixels of an output of this size. */
    static Result<VirtualPointer> plugIn(const QString &socket, QSize output = {1280, 720});

    VirtualPointer(VirtualPointer &&) noexcept;
    ~VirtualPointer();

    void moveTo(QPoint place) const;
    void press() const;
    void release() const;
    void click(QPoint place) const
    {
        moveTo(place);
        press();
        release();
    }

    /** A drag without a step between its ends. */
    void leap(QPoint from, QPoint to) const;

private:
    struct Handles;
    VirtualPointer() = default;
    void sendButton(bool isDown) const;

    std::unique_ptr<Handles> handles_;
};

} // namespace glimmerpane::testing
