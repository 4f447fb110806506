// SPDX-License-Identifier: MIT
#include "platform/x11/X11Backend.h"

#include "platform/x11/AreaMarksX11.h"
#include "platform/x11/DisplaysX11.h"
#include "platform/x11/ImportedBuffers.h"
#include "platform/x11/ManagedWindowX11.h"
#include "platform/x11/OffscreenWindowX11.h"
#include "platform/x11/OutlyingWindowX11.h"
#include "platform/x11/OverlayWindowX11.h"
#include "platform/x11/ParkedWindowX11.h"
#include "platform/x11/PressMonitorX11.h"
#include "platform/x11/ScreenSourceX11.h"
#include "platform/x11/ShellX11.h"
#include "platform/x11/SpanningOverlayX11.h"
#include "platform/x11/WindowManagerName.h"
#include "platform/x11/Xwayland.h"

#include <utility>

namespace glimmerpane::x11
{

namespace
{

class OutputWindowsX11 : public OutputWindows
{
public:
    explicit OutputWindowsX11(bool listed)
        : listed_(listed)
    {
    }

    std::expected<std::unique_ptr<OutputWindow>, Error> make(const QString &title,
                                                             QRect area) override
    {
        return listed_ ? ManagedWindowX11::create(title, area.size())
                       : OffscreenWindowX11::create(title, area.size());
    }

private:
    const bool listed_;
};

class OutlyingWindowsX11 : public OutputWindows
{
public:
    OutlyingWindowsX11(std::shared_ptr<Displays> displays, ViewerWatcher watcher,
                       std::function<double(QRect area)> magnification)
        : displays_(std::move(displays))
        , watcher_(std::move(watcher))
        , magnification_(std::move(magnification))
    {
    }

    std::expected<std::unique_ptr<OutputWindow>, Error> make(const QString &title,
                                                             QRect area) override
    {
        const QSize size = toPixels(area.width(), area.height(), magnification_(area));
        const auto display = displays_->mainDisplay();
        if (!display) {
            return OutlyingWindowX11::create(title, size, watcher_);
        }
        const QRect &pixels = display->pixels;
        const QRect whole({}, toPixels(pixels.width(), pixels.height(), magnification_(pixels)));
        const bool fits = whole.contains(QRect({}, size));
        return OutlyingWindowX11::create(title, fits ? size : aspectFit(size, whole).size(),
                                         watcher_);
    }

private:
    const std::shared_ptr<Displays> displays_;
    const ViewerWatcher watcher_;
    const std::function<double(QRect area)> magnification_;
};

class ParkedWindowsX11 : public OutputWindows
{
public:
    explicit ParkedWindowsX11(ViewerWatcher watcher)
        : watcher_(std::move(watcher))
    {
    }

    std::expected<std::unique_ptr<OutputWindow>, Error> make(const QString &title,
                                                             QRect area) override
    {
        return ParkedWindowX11::create(title, area, watcher_);
    }

private:
    const ViewerWatcher watcher_;
};

class OverlaysX11 : public Overlays
{
public:
    std::expected<std::unique_ptr<OverlayWindow>, Error> make(const QString &title, QRect area,
                                                              const FrostedGlass &glass) override
    {
        return OverlayWindowX11::create(title, area, glass);
    }
};

class SpanningOverlaysX11 : public Overlays
{
public:
    std::expected<std::unique_ptr<OverlayWindow>, Error> make(const QString &title, QRect /*area*/,
                                                              const FrostedGlass &glass) override
    {
        return SpanningOverlayX11::create(title, glass);
    }
};

class AreaMarksMakerX11 : public AreaMarksMaker
{
public:
    std::expected<std::unique_ptr<AreaMarks>, Error> make() override
    {
        return AreaMarksX11::create();
    }
};

class PressesX11 : public Presses
{
public:
    std::unique_ptr<PressMonitor> monitor(std::function<void(QPoint)> pressed) override
    {
        return PressMonitorX11::create(std::move(pressed));
    }
};

} // namespace

std::expected<void, Error> checkDisplay()
{
    if (auto connection = Connection::open(); !connection) {
        return std::unexpected(connection.error());
    }
    return {};
}

QByteArray windowManager()
{
    const auto connection = Connection::open();
    return connection ? windowManagerName(*connection) : QByteArray();
}

std::vector<std::uint64_t> importableModifiers()
{
    const auto connection = Connection::open();
    return connection ? importableModifiers(*connection) : std::vector<std::uint64_t>();
}

bool isXwayland()
{
    const auto connection = Connection::open();
    return connection && isXwayland(*connection);
}

std::shared_ptr<Overlays> makeSpanningOverlays()
{
    return std::make_shared<SpanningOverlaysX11>();
}

std::expected<std::unique_ptr<OutputWindow>, Error> makeOutputWindowAt(const QString &title,
                                                                       QRect frame)
{
    return OffscreenWindowX11::createAt(title, frame);
}

Backend makeBackend(bool listsOutput)
{
    return {.name = QStringLiteral("x11"),
            .displays = std::make_shared<DisplaysX11>(),
            .screen = std::make_shared<ScreenSourceX11>(),
            .outputWindows = std::make_shared<OutputWindowsX11>(listsOutput),
            .overlays = std::make_shared<OverlaysX11>(),
            .presses = std::make_shared<PressesX11>(),
            .shell = std::make_shared<ShellX11>(),
            .marks = std::make_shared<AreaMarksMakerX11>()};
}

std::shared_ptr<OutputWindows> outlyingOutputWindows(
    std::shared_ptr<Displays> displays, ViewerWatcher watcher,
    std::function<double(QRect area)> magnification)
{
    return std::make_shared<OutlyingWindowsX11>(std::move(displays), std::move(watcher),
                                                std::move(magnification));
}

std::shared_ptr<OutputWindows> parkedOutputWindows(ViewerWatcher watcher)
{
    return std::make_shared<ParkedWindowsX11>(std::move(watcher));
}

} // namespace glimmerpane::x11
