// SPDX-License-Identifier: MIT
#include "rig/VirtualPointer.h"

#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>

#include <cstring>
#include <linux/input-event-codes.h>

namespace glimmerpane::testing
{

struct VirtualPointer::Handles {
    wl_display *display = nullptr;
    wl_registry *registry = nullptr;
    wl_output *output = nullptr; ///< the first one
    zwlr_virtual_pointer_manager_v1 *manager = nullptr;
    zwlr_virtual_pointer_v1 *pointer = nullptr;
    QSize size;

    ~Handles()
    {
        if (pointer != nullptr) {
            zwlr_virtual_pointer_v1_destroy(pointer);
        }
        if (manager != nullptr) {
            zwlr_virtual_pointer_manager_v1_destroy(manager);
        }
        if (output != nullptr) {
            wl_output_destroy(output);
        }
        if (registry != nullptr) {
            wl_registry_destroy(registry);
        }
        if (display != nullptr) {
            wl_display_disconnect(display);
        }
    }

    static void announce(void *data, wl_registry *registry, uint32_t name, const char *interface,
                         uint32_t /*version*/)
    {
        auto &self = *static_cast<Handles *>(data);
        const auto bind = [&](const wl_interface &wanted, uint32_t version) {
            return wl_registry_bind(registry, name, &wanted, version);
        };
        if (std::strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0) {
            self.manager = static_cast<zwlr_virtual_pointer_manager_v1 *>(
                bind(zwlr_virtual_pointer_manager_v1_interface, 2));
        } else if (std::strcmp(interface, wl_output_interface.name) == 0
                   && self.output == nullptr) {
            self.output = static_cast<wl_output *>(bind(wl_output_interface, 1));
        }
    }
};

Result<VirtualPointer> VirtualPointer::plugIn(const QString &socket, QSize output)
{
    static constexpr wl_registry_listener listener{
        .global = Handles::announce, .global_remove = [](void *, wl_registry *, uint32_t) { }};
    VirtualPointer pointer;
    pointer.handles_ = std::make_unique<Handles>();
    Handles &handles = *pointer.handles_;
    handles.size = output;
    handles.display = wl_display_connect(qPrintable(socket));
    if (handles.display == nullptr) {
        return failure(QStringLiteral("no compositor at %1").arg(socket));
    }
    handles.registry = wl_display_get_registry(handles.display);
    wl_registry_add_listener(handles.registry, &listener, &handles);
    wl_display_roundtrip(handles.display);
    if (handles.manager == nullptr || handles.output == nullptr) {
        return failure(QStringLiteral("the compositor takes no virtual pointers"));
    }
    handles.pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer_with_output(
        handles.manager, nullptr, handles.output);
    wl_display_roundtrip(handles.display);
    return pointer;
}

VirtualPointer::VirtualPointer(VirtualPointer &&) noexcept = default;
VirtualPointer::~VirtualPointer() = default;

void VirtualPointer::moveTo(QPoint place) const
{
    const auto number = [](int value) { return static_cast<uint32_t>(value); };
    zwlr_virtual_pointer_v1_motion_absolute(handles_->pointer, 0, number(place.x()),
                                            number(place.y()), number(handles_->size.width()),
                                            number(handles_->size.height()));
    zwlr_virtual_pointer_v1_frame(handles_->pointer);
    wl_display_roundtrip(handles_->display);
}

void VirtualPointer::press() const
{
    sendButton(true);
}

void VirtualPointer::release() const
{
    sendButton(false);
}

void VirtualPointer::sendButton(bool isDown) const
{
    zwlr_virtual_pointer_v1_button(handles_->pointer, 0, BTN_LEFT, isDown ? 1 : 0);
    zwlr_virtual_pointer_v1_frame(handles_->pointer);
    wl_display_roundtrip(handles_->display);
}

void VirtualPointer::leap(QPoint from, QPoint to) const
{
    moveTo(from);
    press();
    moveTo(to);
    release();
}

} // namespace glimmerpane::testing
