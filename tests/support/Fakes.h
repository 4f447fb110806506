// SPDX-License-Identifier: MIT
#pragma once

#include "app/MainViewModel.h"
#include "platform/Desktop.h"

#include <QThreadPool>

#include <atomic>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace glimmerpane
{

class FakeFrameRepository : public FrameRepositoryProtocol
{
public:
    std::optional<CaptureFrame> stored;
    std::vector<CaptureFrame> saves;

    std::optional<CaptureFrame> load() override { return stored; }

    void save(const CaptureFrame &frame) override
    {
        stored = frame;
        saves.push_back(frame);
    }
};

/** Its windows are only names: a pointer that nothing may look behind. */
class FakeWindowCoordinator : public WindowCoordinatorProtocol
{
public:
    int selectorsShown = 0;
    int selectorsClosed = 0;
    std::optional<CaptureFrame> initialFrame; ///< of the latest selector
    FrameHandler onConfirm;
    Handler onCancel;

    int windowsShown = 0;
    int windowsClosed = 0;
    CaptureFrame windowFrame; ///< of the latest window
    std::shared_ptr<SharingWindow> window;
    bool visible = false;
    Handler whenClosing; ///< called first by closeSharingWindow()

    void showFrameSelector(std::optional<CaptureFrame> frame, FrameHandler confirm,
                           Handler cancel) override
    {
        ++selectorsShown;
        initialFrame = frame;
        onConfirm = std::move(confirm);
        onCancel = std::move(cancel);
    }

    void closeFrameSelector() override { ++selectorsClosed; }

    std::shared_ptr<SharingWindow> showSharingWindow(const CaptureFrame &frame) override
    {
        ++windowsShown;
        windowFrame = frame;
        visible = true;
        const auto name = std::make_shared<char>();
        window = {name, reinterpret_cast<SharingWindow *>(name.get())};
        return window;
    }

    void closeSharingWindow() override
    {
        if (whenClosing) {
            whenClosing();
        }
        ++windowsClosed;
        visible = false;
        window.reset();
    }

    bool isSharingWindowVisible() const override { return visible; }
};

class FakeCaptureService : public CaptureServiceProtocol
{
public:
    /** A start in flight. One that is dropped ends like one that was stopped. */
    class Start
    {
    public:
        Start(const CaptureFrame &area, std::shared_ptr<SharingWindow> output)
            : frame(area)
            , window(std::move(output))
        {
        }
        ~Start() { resume(); }
        Start(const Start &) = delete;
        Start &operator=(const Start &) = delete;

        const CaptureFrame frame;
        const std::shared_ptr<SharingWindow> window;

        bool isInFlight() const { return bool(waiting_); }

        /** Lets the caller of startCapture() go on; only the first call counts. */
        void complete(const StartResult &result)
        {
            if (isInFlight()) {
                result_ = result;
                resume();
            }
        }

        struct Completion {
            Start &start;

            bool await_ready() const { return false; }
            void await_suspend(std::coroutine_handle<> waiting) { start.waiting_ = waiting; }
            StartResult await_resume() { return std::move(start.result_); }
        };
        Completion completion() { return {*this}; }

    private:
        void resume()
        {
            if (const auto waiting = std::exchange(waiting_, {})) {
                waiting.resume();
            }
        }

        std::coroutine_handle<> waiting_;
        StartResult result_;
    };

    std::vector<std::shared_ptr<Start>> starts;
    std::optional<StartResult> answer; ///< of starts from now on; without one they stay in flight
    int stops = 0;
    Handler onCaptureEnded;

    void setOnCaptureEnded(Handler handler) override { onCaptureEnded = std::move(handler); }

    QCoro::Task<StartResult> startCapture(CaptureFrame frame,
                                          std::shared_ptr<SharingWindow> window) override
    {
        Start &start = *starts.emplace_back(std::make_shared<Start>(frame, std::move(window)));
        if (answer) {
            co_return *answer;
        }
        co_return co_await start.completion();
    }

    void stopCapture() override { ++stops; }
};

/** A desktop without windows and streams. */
class FakeDesktop : public Desktop
{
public:
    double scale = 1;
    std::optional<Rect> mainFrame = Rect{.x = 0, .y = 0, .width = 1440, .height = 900};
    std::expected<ShareableContent, Error> content; ///< change it only while no request runs
    mutable std::atomic<int> contentRequests = 0;
    int privacySettingsOpened = 0;

    /** Requests for the content that still run are ended first. */
    ~FakeDesktop() override
    {
        releaseContent();
        QThreadPool::globalInstance()->waitForDone();
    }

    /** Lets requests for the content wait until releaseContent(). */
    void holdContent() { held_ = true; }
    void releaseContent()
    {
        held_ = false;
        held_.notify_all();
    }

    void denyContent() { content = std::unexpected(Error{QStringLiteral("denied"), {}}); }

    double scaleFactor() const override { return scale; }
    std::vector<Display> displays() const override
    {
        if (!mainFrame) {
            return {};
        }
        const QSize size = toPixels(mainFrame->width, mainFrame->height, scale);
        return {{.name = {}, .pixels = {QPoint(), size}}};
    }

    std::expected<ShareableContent, Error> shareableContent() const override
    {
        ++contentRequests;
        held_.wait(true);
        return content;
    }

    void openPrivacySettings() override { ++privacySettingsOpened; }

    std::expected<std::unique_ptr<OffscreenWindow>, Error> makeOffscreenWindow(const QString &,
                                                                               QPoint,
                                                                               QSize) override
    {
        return std::unexpected(Error{QStringLiteral("no windows"), {}});
    }

    std::expected<std::unique_ptr<OverlayWindow>, Error> makeOverlayWindow(
        const QString &, QRect, const FrostedGlass &) override
    {
        return std::unexpected(Error{QStringLiteral("no overlays"), {}});
    }

    std::expected<std::unique_ptr<DisplayLayer>, Error> makeDisplayLayer(
        const OffscreenWindow &) override
    {
        return std::unexpected(Error{QStringLiteral("no layers"), {}});
    }

    std::unique_ptr<PressMonitor> monitorPresses(std::function<void(QPoint)>) override
    {
        return nullptr;
    }

    std::unique_ptr<CaptureStream> makeCaptureStream(const ContentFilter &,
                                                     const StreamConfiguration &) override
    {
        return nullptr;
    }

private:
    std::atomic<bool> held_ = false;
};

class FakeAlerts : public AlertPresenterProtocol
{
public:
    std::vector<Alert> shown;
    int answer = firstAlertButton;
    std::function<void()> whileUp; ///< called while an alert is up

    int runModal(const Alert &alert) override
    {
        shown.push_back(alert);
        if (whileUp) {
            whileUp();
        }
        return answer;
    }
};

/** A view model with a fake for everything. The services live as long as the view model. */
struct FakeApplication {
    explicit FakeApplication(std::optional<CaptureFrame> stored = std::nullopt,
                             std::optional<Rect> mainFrame = Rect{0, 0, 1440, 900})
    {
        desktop.mainFrame = mainFrame;
        repository->stored = stored;
        viewModel = std::make_unique<MainViewModel>(
            std::unique_ptr<FrameRepositoryProtocol>(repository), nullptr,
            std::unique_ptr<WindowCoordinatorProtocol>(coordinator),
            std::unique_ptr<CaptureServiceProtocol>(capture), desktop, alerts);
    }

    FakeDesktop desktop;
    FakeAlerts alerts;
    FakeFrameRepository *const repository = new FakeFrameRepository;
    FakeWindowCoordinator *const coordinator = new FakeWindowCoordinator;
    FakeCaptureService *const capture = new FakeCaptureService;
    std::unique_ptr<MainViewModel> viewModel;
};

} // namespace glimmerpane
