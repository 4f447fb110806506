// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"
#include "rig/PatternWindow.h"

namespace glimmerpane::bench
{

namespace
{

/** Whether the output is there and has the picture's number and its last pixel. */
bool showsPicture(const MeasuredDesktop &desktop, QRgb lastPixel)
{
    const auto output = desktop.outputWindow();
    const auto captured
        = output ? CapturedWindow::open(desktop.client, *output) : failure(QString());
    if (!captured || captured->size() != measuredArea.size()) {
        return false;
    }
    const QRect last(measuredArea.width() - 1, measuredArea.height() - 1, 1, 1);
    const auto pixel = captured->part(last);
    return pixel && pixel->pixel(0, 0) == lastPixel && shownNumber(*captured) == 0U;
}

double measureRun(const Measurement &measurement)
{
    MeasuredDesktop desktop(measurement);
    const auto picture
        = required(PatternWindow::open(desktop.server.displayName(), {.rectangle = measuredArea}));
    desktop.startProgram(false);
    const QRect last(measuredArea.bottomRight(), QSize(1, 1));
    const QRgb lastPixel = required(desktop.client.screenshot(last)).pixel(0, 0);
    desktop.input.moveTo(desktop.awaitButton(places::startSharing));
    desktop.input.press();
    const auto begin = std::chrono::steady_clock::now();
    desktop.input.release();
    return timeUntil([&] { return showsPicture(desktop, lastPixel); }, begin,
                     "no right picture came after the click on Start sharing");
}

} // namespace

std::vector<Figure> measureFirstFrame(const Measurement &measurement)
{
    return measurement.repeat(
        {{.name = u"Time from Start sharing to the first right picture"_s,
          .unit = u" ms"_s,
          .counted = u"from the release of the mouse button on Start sharing until the first and "
                     "the last pixels read from the output are the area's; first sharing of a "
                     "fresh process"_s,
          .atMost = 100}},
        [&] { return std::vector{measureRun(measurement)}; });
}

} // namespace glimmerpane::bench
