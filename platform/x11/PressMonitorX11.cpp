// SPDX-License-Identifier: MIT
#include "platform/x11/PressMonitorX11.h"

#include "platform/x11/Events.h"
#include "platform/x11/RawInput.h"
#include "platform/x11/WindowProperties.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QtConcurrent>

#include <xcb/xinput.h>

#include <utility>

namespace glimmerpane::x11
{

std::unique_ptr<PressMonitor> PressMonitorX11::create(std::function<void(QPoint)> pressed)
{
    auto opened = openExtended();
    if (!opened) {
        return nullptr;
    }
    return std::unique_ptr<PressMonitor>(
        new PressMonitorX11(std::move(opened->connection), opened->extensions, std::move(pressed)));
}

PressMonitorX11::PressMonitorX11(Connection connection, const Extensions &extensions,
                                 std::function<void(QPoint)> pressed)
    : connection_(std::move(connection))
    , xinputOpcode_(extensions.xinputOpcode)
    , pressed_(std::move(pressed))
    , host_(QSysInfo::machineHostName().toLatin1())
    , events_(connection_)
{
    events_.onEvent = [this](const xcb_generic_event_t &event) { count(event); };
    events_.onDrained = [this] { look(); };
    QObject::connect(&looking_, &QFutureWatcherBase::finished, &events_, [this] { tell(); });
    selectRawEvents(connection_, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    events_.flush();
}

PressMonitorX11::~PressMonitorX11()
{
    looking_.waitForFinished();
}

void PressMonitorX11::count(const xcb_generic_event_t &event)
{
    constexpr std::uint32_t left = 1;
    constexpr std::uint32_t right = 3;
    if (rawEventType(event, xinputOpcode_) == XCB_INPUT_RAW_BUTTON_PRESS) {
        const auto &press = eventAs<xcb_input_raw_button_press_event_t>(event);
        presses_ += press.detail == left || press.detail == right ? 1 : 0;
    }
}

/** Presses that arrived together get one position: the server knows only the latest. */
void PressMonitorX11::look()
{
    if (presses_ == 0 || isLooking_) {
        return;
    }
    isLooking_ = true;
    lookedFor_ = std::exchange(presses_, 0);
    looking_.setFuture(QtConcurrent::run([this] { return placeOfPress(); }));
}

void PressMonitorX11::tell()
{
    isLooking_ = false;
    const std::optional<QPoint> place = looking_.result();
    for (int i = 0; place && i < lookedFor_; ++i) {
        pressed_(*place);
    }
    events_.flush(); // waiting for replies may have read events
    look();
}

/** Null if it was on one of this program's windows. */
std::optional<QPoint> PressMonitorX11::placeOfPress() const
{
    const Reply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
    if (!pointer || pointer->same_screen == 0) {
        return std::nullopt;
    }
    const QPoint place(pointer->root_x, pointer->root_y);
    return isOurs(pointer->child, place) ? std::nullopt : std::optional(place);
}

/** Whether the window there, or one of its ancestors, belongs to this program. */
bool PressMonitorX11::isOurs(xcb_window_t topLevel, QPoint place) const
{
    for (xcb_window_t window = topLevel; window != XCB_WINDOW_NONE;) {
        const auto below = xcb_translate_coordinates(connection_.get(), connection_.root(), window,
                                                     static_cast<std::int16_t>(place.x()),
                                                     static_cast<std::int16_t>(place.y()));
        const bool isFound = belongsToUs(window);
        const Reply<xcb_translate_coordinates_reply_t> child(
            xcb_translate_coordinates_reply(connection_.get(), below, nullptr));
        if (isFound) {
            return true;
        }
        window = child ? child->child : xcb_window_t(XCB_WINDOW_NONE);
    }
    return false;
}

/** EWMH: a process id is only meaningful together with the machine. */
bool PressMonitorX11::belongsToUs(xcb_window_t window) const
{
    constexpr std::uint32_t longest = 256;
    const PropertyQuestion pid(connection_, window, connection_.atom("_NET_WM_PID"), longest);
    const PropertyQuestion host(connection_, window, XCB_ATOM_WM_CLIENT_MACHINE, longest);
    const bool isOurPid
        = pid.item<std::uint32_t>() == std::uint32_t(QCoreApplication::applicationPid());
    return host.bytes() == host_ && isOurPid;
}

} // namespace glimmerpane::x11
