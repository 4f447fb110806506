// SPDX-License-Identifier: MIT
#include "platform/wlroots/OutputWindowsWlroots.h"

#include "platform/Log.h"
#include "platform/wlroots/SwayOutput.h"
#include "platform/x11/X11Backend.h"

#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

/** A window and the output that it fills while it is visible. */
class SwayOutputWindow : public OutputWindow
{
public:
    SwayOutputWindow(std::unique_ptr<OutputWindow> window, std::unique_ptr<SwayOutput> output)
        : output_(std::move(output))
        , window_(std::move(window))
    {
        window_->onCloseRequest = [this] { tell(onCloseRequest); };
        window_->onContentsLost = [this] { tell(onContentsLost); };
    }

    bool isVisible() const override { return window_->isVisible(); }
    void orderFront() override { window_->orderFront(); }

    void orderOut() override
    {
        window_->orderOut();
        output_.reset();
    }

    std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer() override
    {
        return window_->makeDisplayLayer();
    }

private:
    static void tell(const std::function<void()> &handler)
    {
        if (handler) {
            handler();
        }
    }

    std::unique_ptr<SwayOutput> output_; ///< until it is ordered out
    std::unique_ptr<OutputWindow> window_;
};

} // namespace

OutputWindowsWlroots::OutputWindowsWlroots(std::shared_ptr<OutputWindows> offscreen)
    : offscreen_(std::move(offscreen))
{
    SwayOutput::removeAbandoned();
}

std::expected<std::unique_ptr<OutputWindow>, Error> OutputWindowsWlroots::make(const QString &title,
                                                                               QRect area)
{
    auto output = SwayOutput::create(area.size());
    if (!output) {
        qCWarning(platformLog).noquote() << Error::tr("%1 is only offered by programs that share "
                                                      "X11 windows, because this compositor makes "
                                                      "no output for it: %2")
                                                .arg(title, output.error().text);
        return offscreen_->make(title, area);
    }
    auto window = x11::makeOutputWindowAt(title, (*output)->place());
    if (!window) {
        return std::unexpected(window.error());
    }
    return std::make_unique<SwayOutputWindow>(std::move(*window), std::move(*output));
}

} // namespace glimmerpane::wlroots
