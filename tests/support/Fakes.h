// SPDX-License-Identifier: MIT
#pragma once

#include "model/MainViewModel.h"
#include "platform/Desktop.h"

#include <QThreadPool>

#include <atomic>
#include <coroutine>
#include <sstream>
#include <utility>

namespace glimmerpane
{

/** A journal's entry for an event and its area. */
inline QString entry(const char *name, const CaptureFrame &area)
{
    std::ostringstream text; // unlike QString, it tells zeros by their sign
    text << name << ' ' << area.x << ' ' << area.y << ' ' << area.width << ' ' << area.height;
    return QString::fromStdString(text.str());
}

/** A desktop without real windows and streams. */
struct FakeDesktop : Desktop {
    double scale = 1;
    std::vector<Display> all{{.name = {}, .pixels = {0, 0, 1280, 720}}};
    std::expected<ShareableContent, Error> content; ///< change it only while no request is running
    std::atomic<bool> held = false;
    bool hasSettings = true; ///< a settings program
    QRegion shape; ///< given to a window last
    QStringList journal; ///< the calls made, one entry each

    /** First ends running requests for the content. */
    ~FakeDesktop() override
    {
        releaseContent();
        QThreadPool::globalInstance()->waitForDone();
    }

    /** Makes requests for the content wait until releaseContent(). */
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
    void activateWindow(std::uint32_t, const QString &) override { }
    void setShape(std::uint32_t, const QRegion &pixels) override { shape = pixels; }
    bool openPrivacySettings() override
    {
        journal.append(QStringLiteral("settings"));
        return hasSettings;
    }
    void notify(const QString &title, const QString &) override
    {
        journal.append(QStringLiteral("notify ") + title);
    }
    void openUrl(const QUrl &url) override
    {
        journal.append(QStringLiteral("open ") + url.toString());
    }

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
    void save(const CaptureFrame &frame, Pace) override { journal.append(entry("save", frame)); }
    QFuture<void> allWritten() override { return {}; } // finished
};

struct FakeWindowCoordinator : Journalist<WindowCoordinatorProtocol> {
    using Journalist::Journalist;
    FrameHandler onConfirm;
    Handler onCancel;
    std::expected<void, Error> opened; ///< the result of opening the selector
    bool isVisible = false;

    std::expected<void, Error> showFrameSelector(std::optional<CaptureFrame> frame,
                                                 FrameHandler confirm, Handler cancel) override
    {
        journal.append(frame ? entry("select", *frame) : QStringLiteral("select"));
        onConfirm = std::move(confirm);
        onCancel = std::move(cancel);
        if (!opened) {
            onCancel();
        }
        return opened;
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

/** A call that is being awaited. If dropped, it completes successfully. */
template<typename Result>
struct PendingCall {
    std::coroutine_handle<> caller = nullptr;
    Result result = {};

    ~PendingCall() { complete({}); }

    /** Lets the caller continue; only the first call counts. */
    void complete(const Result &answer)
    {
        if (const auto waiting = std::exchange(caller, nullptr)) {
            result = answer;
            waiting.resume();
        }
    }

    struct Completion {
        PendingCall &call;

        bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> waiting) const { call.caller = waiting; }
        Result await_resume() const { return call.result; }
    };
};

template<typename Result>
using PendingCalls = std::vector<std::shared_ptr<PendingCall<Result>>>;

template<typename Result>
QCoro::Task<Result> pend(PendingCalls<Result> &calls)
{
    auto &call = *calls.emplace_back(std::make_shared<PendingCall<Result>>());
    co_return co_await typename PendingCall<Result>::Completion{call};
}

struct FakeCaptureService : Journalist<CaptureServiceProtocol> {
    using Journalist::Journalist;
    PendingCalls<StartResult> starts;
    EndHandler onCaptureEnded;

    void setOnCaptureEnded(EndHandler handler) override { onCaptureEnded = std::move(handler); }
    QCoro::Task<StartResult> startCapture(CaptureFrame frame,
                                          std::shared_ptr<SharingWindow>) override
    {
        journal.append(entry("capture", frame));
        return pend(starts);
    }
    void stopCapture() override { journal.append(QStringLiteral("stop")); }
    CaptureStatistics statistics() const override { return {}; }
};

struct FakeUpdateRepository : Journalist<UpdateRepositoryProtocol> {
    using Journalist::Journalist;
    PendingCalls<CheckResult> checks;

    QCoro::Task<CheckResult> checkForUpdate(QString serialNumber, QString appVersion) override
    {
        journal.append(QStringLiteral("ask ") + serialNumber + u' ' + appVersion);
        return pend(checks);
    }
};

struct FakeAlerts : Journalist<AlertPresenterProtocol> {
    using Journalist::Journalist;
    int answer = firstAlertButton;
    std::function<void()> whileUp = [] { };

    int runModal(const Alert &alert) override
    {
        const bool isWarning = alert.style == Alert::Style::Warning;
        journal.append(QStringLiteral("%1|%2|%3|%4")
                           .arg(isWarning ? QStringLiteral("warning") : QStringLiteral("info"),
                                alert.messageText, alert.informativeText,
                                alert.buttons.join(u'|')));
        whileUp();
        return answer;
    }
};

/** A view model with fakes for everything. The services live as long as the view model. */
struct FakeApplication {
    explicit FakeApplication(std::optional<CaptureFrame> stored, bool hasDisplay = true,
                             const Identity &identity
                             = {QStringLiteral("N/A"), QStringLiteral("01ab")})
    {
        repository->stored = stored;
        desktop.all.resize(hasDisplay ? 1 : 0);
        viewModel = std::make_unique<MainViewModel>(
            std::unique_ptr<FrameRepositoryProtocol>(repository),
            std::unique_ptr<UpdateRepositoryProtocol>(updates),
            std::unique_ptr<WindowCoordinatorProtocol>(coordinator),
            std::unique_ptr<CaptureServiceProtocol>(capture), desktop, alerts, identity);
    }

    FakeDesktop desktop;
    QStringList &journal = desktop.journal;
    FakeAlerts alerts{journal};
    FakeFrameRepository *const repository = new FakeFrameRepository(journal);
    FakeUpdateRepository *const updates = new FakeUpdateRepository(journal);
    FakeWindowCoordinator *const coordinator = new FakeWindowCoordinator(journal);
    FakeCaptureService *const capture = new FakeCaptureService(journal);
    std::unique_ptr<MainViewModel> viewModel;
};

} // namespace glimmerpane
