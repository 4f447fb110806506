// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppCoordinator.h"
#include "capture/ScreenCaptureService.h"
#include "platform/x11/X11Backend.h"
#include "rig/CapturedWindow.h"
#include "rig/ChildProcess.h"
#include "rig/ColorWindow.h"
#include "rig/DamageWatch.h"
#include "rig/InputInjector.h"
#include "rig/XClient.h"
#include "rig/XWindows.h"
#include "rig/XvfbServer.h"

#include <QRect>

#include <memory>
#include <optional>

namespace glimmerpane::testing
{

constexpr auto patience = std::chrono::seconds(5); ///< how long a condition may take to hold
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;

/**
 * A capture of a part of a private X server's screen, run by the program's own services, and a
 * second client that changes the screen and reads what a viewer of the shared window sees.
 */
class CaptureFixture
{
public:
    explicit CaptureFixture(const XvfbServer::Options &options = {});
    ~CaptureFixture();

    XvfbServer server;
    XClient client;
    InputInjector input;

    /** Starts to capture a rectangle of the root; fails the test if it does not start. */
    void share(QRect area);
    void stop();
    /** The area is expected to be at another place from now on. */
    void follow(QRect area) { area_ = area; }

    /** The expected output: the area's pixels with the pointer over them. */
    QImage expected() const;
    /** What a capturing client reads from the output window; null if it cannot be read. */
    QImage actual();
    /** Whether the two become the same; saves both where they do not. */
    bool showsArea();

    /** Makes the pointer look like a text cursor over a window. */
    void setTextCursor(xcb_window_t window) const;

    xcb_window_t outputWindow() const { return outputWindow_; }
    int captureEnds = 0; ///< how often the service said that the capture ended by itself

    Backend backend;
    std::unique_ptr<AppCoordinator> coordinator;
    std::unique_ptr<ScreenCaptureService> service;

private:
    QRect area_;
    xcb_window_t outputWindow_ = XCB_NONE;
    std::optional<CapturedWindow> captured_;
};

/** The capture threads of this process. */
int captureThreads();

/** The area of a rectangle of the root, on a single display as high as the root. */
CaptureFrame frameOf(QRect rootRectangle, int rootHeight);

} // namespace glimmerpane::testing
