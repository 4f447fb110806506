// SPDX-License-Identifier: MIT
#pragma once

#include "app/MainViewModel.h"
#include "platform/Desktop.h"

#include <QThreadPool>

#include <atomic>
#include <coroutine>
#include <sstream>
#include <utility>

namespace glimmerpane
{

/** What a journal says of an event and the area it is about. */
inline QString entry(const char *name, const CaptureFrame &area)
{
    std::ostringstream text; // unlike QString, it tells zeros by their sign
    text << name << ' ' << area.x << ' ' << area.y << ' ' << area.width << ' ' << area.height;
    return QString::fromStdString(text.str());
}

/** A desktop that makes no windows and streams. */
struct FakeDesktop : Desktop {
    double scale = 1;
    std::vector<Display> all{{.name = {}, .pixels = {0, 0, 1280, 720}}};
    std::expected<ShareableContent, Error> content; ///< change it only while no request runs
    std::atomic<bool> held = false;
    QStringList journal; ///< what was asked of the fakes, one event each

    /** Requests for the content that still run are ended first. */
    ~FakeDesktop() override
    {
        releaseContent();
        QThreadPool::globalInstance()->waitForDone();
    }

    /** Lets requests for the content wait until releaseContent(). */
    void holdContent() { held = true; }
    void releaseContent()
    {
        held = false;
        held.notify_all();
    }
    void denyContent() { content = std::unexpected(Error{QStringLiteral("denied"), {}}); }

    double scaleFactor() const override { return scale; }
    std::vector<Display> displays() const override { return all; }
    std::expected<ShareableContent, Error> shareableContent() const override
    {
        held.wait(true);
        return content;
    }
    void openPrivacySettings() override { journal.append(QStringLiteral("settings")); }

    template<typename T>
    using Made = std::expected<std::unique_ptr<T>, Error>;
    Made<OffscreenWindow> makeOffscreenWindow(const QString &, QPoint, QSize) override
    {
        return {};
    }
    Made<OverlayWindow> makeOverlayWindow(const QString &, QRect, const FrostedGlass &) override
    {
        return {};
    }
    Made<DisplayLayer> makeDisplayLayer(const OffscreenWindow &) override { return {}; }
    std::unique_ptr<PressMonitor> monitorPresses(std::function<void(QPoint)>) override
    {
        return {};
    }
    std::unique_ptr<CaptureStream> makeCaptureStream(const ContentFilter &,
                                                     const StreamConfiguration &) override
    {
        return {};
    }
};

template<typename Protocol>
struct Journalist : Protocol {
    explicit Journalist(QStringList &events)
        : journal(events)
    {
    }
    QStringList &journal;
};

struct FakeFrameRepository : Journalist<FrameRepositoryProtocol> {
    using Journalist::Journalist;
    std::optional<CaptureFrame> stored;

    std::optional<CaptureFrame> load() override { return stored; }
    void save(const CaptureFrame &frame) override { journal.append(entry("save", frame)); }
};

struct FakeWindowCoordinator : Journalist<WindowCoordinatorProtocol> {
    using Journalist::Journalist;
    FrameHandler onConfirm;
    Handler onCancel;
    bool isVisible = false;

    void showFrameSelector(std::optional<CaptureFrame> frame, FrameHandler confirm,
                           Handler cancel) override
    {
        journal.append(frame ? entry("select", *frame) : QStringLiteral("select"));
        onConfirm = std::move(confirm);
        onCancel = std::move(cancel);
    }
    void closeFrameSelector() override { }

    std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) override
    {
        journal.append(entry("window", frame));
        isVisible = true;
        return nullptr;
    }
    void closeSharingWindow() override
    {
        journal.append(QStringLiteral("close"));
        isVisible = false;
    }
    bool isSharingWindowVisible() const override { return isVisible; }
};

struct FakeCaptureService : Journalist<CaptureServiceProtocol> {
    using Journalist::Journalist;

    /** A start in flight. One that is dropped ends like one that was stopped. */
    struct Start {
        std::coroutine_handle<> caller = nullptr;
        StartResult result = {};

        ~Start() { complete({}); }

        /** Lets the caller of startCapture() go on; only the first call counts. */
        void complete(const StartResult &answer)
        {
            if (const auto waiting = std::exchange(caller, nullptr)) {
                result = answer;
                waiting.resume();
            }
        }
    };
    struct Completion {
        Start &start;

        bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> waiting) const { start.caller = waiting; }
        StartResult await_resume() const { return start.result; }
    };

    std::vector<std::shared_ptr<Start>> starts;
    Handler onCaptureEnded;

    void setOnCaptureEnded(Handler handler) override { onCaptureEnded = std::move(handler); }
    QCoro::Task<StartResult> startCapture(CaptureFrame frame,
                                          std::shared_ptr<SharingWindow>) override
    {
        journal.append(entry("capture", frame));
        co_return co_await Completion{*starts.emplace_back(std::make_shared<Start>())};
    }
    void stopCapture() override { journal.append(QStringLiteral("stop")); }
};

struct FakeAlerts : Journalist<AlertPresenterProtocol> {
    using Journalist::Journalist;
    Alert shown; ///< the latest
    int answer = firstAlertButton;
    std::function<void()> whileUp = [] { };

    int runModal(const Alert &alert) override
    {
        journal.append(alert.messageText + u'|' + alert.informativeText + u'|'
                       + alert.buttons.join(u'|'));
        shown = alert;
        whileUp();
        return answer;
    }
};

/** A view model with a fake for everything. The services live as long as the view model. */
struct FakeApplication {
    explicit FakeApplication(std::optional<CaptureFrame> stored, bool hasDisplay = true)
    {
        repository->stored = stored;
        desktop.all.resize(hasDisplay ? 1 : 0);
        viewModel = std::make_unique<MainViewModel>(
            std::unique_ptr<FrameRepositoryProtocol>(repository), nullptr,
            std::unique_ptr<WindowCoordinatorProtocol>(coordinator),
            std::unique_ptr<CaptureServiceProtocol>(capture), desktop, alerts);
    }

    FakeDesktop desktop;
    QStringList &journal = desktop.journal;
    FakeAlerts alerts{journal};
    FakeFrameRepository *const repository = new FakeFrameRepository(journal);
    FakeWindowCoordinator *const coordinator = new FakeWindowCoordinator(journal);
    FakeCaptureService *const capture = new FakeCaptureService(journal);
    std::unique_ptr<MainViewModel> viewModel;
};

} // namespace glimmerpane
