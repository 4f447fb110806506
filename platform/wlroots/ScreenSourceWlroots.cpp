// SPDX-License-Identifier: MIT
#include "platform/wlroots/ScreenSourceWlroots.h"

#include "platform/wlroots/CaptureStreamWlroots.h"
#include "platform/wlroots/ScreencopySession.h"

#include <QCoroFuture>
#include <QtConcurrent>

namespace glimmerpane::wlroots
{

namespace
{

using Content = std::expected<ShareableContent, Error>;

Content askCompositor()
{
    const auto session = ScreencopySession::open();
    if (!session) {
        return std::unexpected(session.error());
    }
    ShareableContent content;
    for (const Output *output : session->wayland->outputs()) {
        content.displays.push_back({.name = output->state.name, .pixels = output->state.logical});
    }
    return content;
}

} // namespace

QCoro::Task<Content> ScreenSourceWlroots::shareableContent(Rect /*area*/)
{
    auto request = QtConcurrent::run(background_.get(), askCompositor);
    co_return co_await request;
}

std::unique_ptr<CaptureStream> ScreenSourceWlroots::makeCaptureStream(
    const ContentFilter &filter, const StreamConfiguration &configuration)
{
    return std::make_unique<CaptureStreamWlroots>(filter, configuration, background_);
}

} // namespace glimmerpane::wlroots
