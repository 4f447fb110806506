// SPDX-License-Identifier: MIT
#include "rig/Program.h"

#include "rig/InputInjector.h"
#include "rig/XWindows.h"

#include <QCoreApplication>
#include <QDir>

#include <csignal>

namespace glimmerpane::testing
{

namespace
{

constexpr std::chrono::seconds windowLimit{15};
constexpr std::chrono::seconds endLimit{10};

QString mainTitle()
{
    return QStringLiteral("Glimmerpane");
}

QString outputTitle()
{
    return QStringLiteral("Glimmerpane - Output");
}

std::optional<xcb_window_t> visibleWindow(const XClient &client, const QString &title)
{
    // No window manager knows of the selector, so it is in no picker's list.
    const auto listing = title == selectorTitle() ? Listing::All : Listing::Picker;
    const auto window = findWindow(client, title, listing);
    return window && isViewable(client, *window) ? window : std::nullopt;
}

} // namespace

Result<Program> Program::start(const Desktop &desktop, const Options &options)
{
    QStringList arguments{
        QStringLiteral("--area=%1").arg(areaText(options.area, desktop.screenSize()))};
    if (options.share) {
        arguments << QStringLiteral("--share");
    }
    auto process = ChildProcess::start({.program = options.executable,
                                        .arguments = arguments,
                                        .environment = desktop.environment()});
    if (!process) {
        return failure(process.error());
    }
    return Program(desktop, std::move(*process));
}

Result<xcb_window_t> Program::mainWindow()
{
    return await(mainTitle());
}

Result<xcb_window_t> Program::outputWindow()
{
    return await(outputTitle());
}

std::optional<xcb_window_t> Program::currentOutput() const
{
    return visibleWindow(desktop_->client(), outputTitle());
}

Result<xcb_window_t> Program::await(const QString &title)
{
    std::optional<xcb_window_t> window;
    desktop_->waitFor(
        [&] {
            window = visibleWindow(desktop_->client(), title);
            return window || !process_.isRunning();
        },
        windowLimit);
    if (!window) {
        return failure(problem(QStringLiteral("no window \"%1\"").arg(title)));
    }
    return *window;
}

Result<void> Program::placeMainWindow(QPoint place, const QRect &uncovered)
{
    const auto &client = desktop_->client();
    const auto window = mainWindow();
    if (!window) {
        return failure(window.error());
    }
    const uint32_t values[] = {static_cast<uint32_t>(place.x()), static_cast<uint32_t>(place.y())};
    xcb_configure_window(client.connection(), *window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                         values);
    client.flush();
    const auto isThere = [&] {
        const auto frame = geometryOf(client, topLevelOf(client, *window));
        return frame && frame->contains(place) && !frame->intersects(uncovered);
    };
    if (!desktop_->waitFor(isThere, windowLimit)) {
        return failure(QStringLiteral("the main window does not go where it should"));
    }
    return {};
}

std::optional<QPoint> Program::button(ButtonColor color) const
{
    const auto &client = desktop_->client();
    const auto window = visibleWindow(client, mainTitle());
    const auto frame = window ? geometryOf(client, *window) : std::nullopt;
    const auto picture = frame ? client.screenshot(*frame & QRect({}, client.rootSize()))
                               : failure(QStringLiteral("no main window"));
    const auto place = picture ? findButton(*picture, color) : std::nullopt;
    return place ? std::optional(*place + frame->topLeft()) : std::nullopt;
}

std::optional<QPoint> Program::startButton() const
{
    return button(ButtonColor::Accent);
}

std::optional<QPoint> Program::stopButton() const
{
    return button(ButtonColor::Danger);
}

std::optional<QPoint> Program::setAreaButton() const
{
    constexpr QPoint nextButton(0, 44); // a button's height and the gap below it
    const auto start = startButton();
    return start ? std::optional(*start + nextButton) : std::nullopt;
}

Result<QPoint> Program::await(std::optional<QPoint> (Program::*find)() const) const
{
    std::optional<QPoint> place;
    desktop_->waitFor([&] { return (place = (this->*find)()).has_value(); }, windowLimit);
    return place ? Result<QPoint>(*place)
                 : failure(problem(QStringLiteral("a button cannot be pressed")));
}

Result<void> Program::click(std::optional<QPoint> (Program::*find)() const)
{
    const auto place = await(find);
    if (!place) {
        return failure(place.error());
    }
    InputInjector(desktop_->client()).click(*place);
    return {};
}

Result<void> Program::clickStart()
{
    return click(&Program::startButton);
}

Result<void> Program::clickStop()
{
    return click(&Program::stopButton);
}

Result<QPoint> Program::awaitSetArea() const
{
    return await(&Program::setAreaButton);
}

Result<xcb_window_t> Program::openSelector()
{
    const auto clicked = click(&Program::setAreaButton);
    return clicked ? await(selectorTitle()) : failure(clicked.error());
}

Result<void> Program::end()
{
    process_.sendSignal(SIGTERM);
    if (!process_.waitForEnd(endLimit)) {
        return failure(problem(QStringLiteral("it does not end when asked to")));
    }
    if (const int code = process_.exitCode().value_or(0); code != 0) {
        return failure(problem(QStringLiteral("it left with exit code %1").arg(code)));
    }
    return {};
}

QString Program::problem(const QString &text) const
{
    const QByteArray output = process_.output().trimmed();
    return output.isEmpty()
        ? text
        : QStringLiteral("%1; glimmerpane said: %2").arg(text, QString::fromLocal8Bit(output));
}

QString selectorTitle()
{
    return QStringLiteral("Glimmerpane - Area");
}

xcb_window_t topLevelOf(const XClient &client, xcb_window_t window)
{
    for (;;) {
        const auto tree = ask<xcb_query_tree, xcb_query_tree_reply>(client, window);
        if (!tree || tree->parent == XCB_WINDOW_NONE || tree->parent == client.root()) {
            return window;
        }
        window = tree->parent;
    }
}

QString areaText(const QRect &area, QSize screen)
{
    // Points count from the bottom-left corner, y up; these displays have one pixel per point.
    return QStringLiteral("%1,%2,%3x%4")
        .arg(area.x())
        .arg(screen.height() - area.y() - area.height())
        .arg(area.width())
        .arg(area.height());
}

QString executableOr(const QString &given)
{
    if (!given.isEmpty()) {
        return QDir::current().absoluteFilePath(given);
    }
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("glimmerpane"));
}

} // namespace glimmerpane::testing
