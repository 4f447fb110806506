// SPDX-License-Identifier: MIT
#include "platform/x11/PointerInbox.h"

#include <QPointer>

#include <utility>

namespace glimmerpane::x11
{

PointerInbox::PointerInbox(OverlayWindow &overlay)
    : overlay_(overlay)
{
}

void PointerInbox::deliver(const PointerEvent &event)
{
    using Kind = PointerEvent::Kind;
    if (event.kind == Kind::Drag || event.kind == Kind::Move) {
        motion_ = event;
        return;
    }
    const auto handler = overlay_.onPointer;
    const QPointer self(&lives_);
    deliverMotion();
    if (self && handler) {
        handler(event);
    }
}

void PointerInbox::deliverMotion()
{
    if (const auto motion = std::exchange(motion_, std::nullopt)) {
        if (const auto handler = overlay_.onPointer) {
            handler(*motion);
        }
    }
}

} // namespace glimmerpane::x11
