// SPDX-License-Identifier: MIT
#pragma once

#include "model/MainViewModel.h"
#include "platform/Backend.h"

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

/** A call that is being awaited. If dropped, it completes successfully. */
template<typename Result>
struct PendingCall {
    std::coroutine_handle<> caller = nullptr;
    Result result = {};

    ~PendingCall() { complete({}); }

    /** Lets the caller go on; only the first time counts. */
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

/** A desktop that makes no windows and streams. */
struct FakeDesktop : Displays, ScreenSource, OutputWindows, Overlays, Presses, Shell {
    using Content = std::expected<ShareableContent, Error>;
    double scale = 1;
    std::vector<Display> all{{.name = {}, .pixels = {0, 0, 1280, 720}}};
    Content content; ///< the answer to requests for it
    bool isHeld = false; ///< requests wait until answerRequests()
    PendingCalls<Content> requests;
    bool hasSettings = true; ///< a program for them
    QRegion shape; ///< of the window that was given one last
    QStringList journal; ///< what was asked of the fakes, one event each

    /** Plays all roles itself, and must outlive the result. */
    Backend backend()
    {
        const std::shared_ptr<void> nobody;
        return {.name = QStringLiteral("fake"),
                .displays = {nobody, this},
                .screen = {nobody, this},
                .outputWindows = {nobody, this},
                .overlays = {nobody, this},
                .presses = {nobody, this},
                .shell = {nobody, this}};
    }

    void answerRequests()
    {
        for (const auto &request : std::exchange(requests, {})) {
            request->complete(content);
        }
    }
    void denyContent() { content = std::unexpected(Error{QStringLiteral("denied"), {}}); }

    double scaleFactor() const override { return scale; }
    std::vector<Display> displays() const override { return all; }
    int largestWindowSide() const override { return 32767; }
    QCoro::Task<Content> shareableContent(Rect) override
    {
        if (isHeld) {
            co_return co_await pend(requests);
        }
        co_return content;
    }
    void activateWindow(QWindow &, const QString &) override { }
    bool isActive(const QWindow & /*window*/) override { return true; }
    void setShape(QWindow &, const QRegion &pixels) override { shape = pixels; }
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
    Made<OutputWindow> make(const QString &, QRect) override { return {}; }
    Made<OverlayWindow> make(const QString &, QRect, const FrostedGlass &) override { return {}; }
    std::unique_ptr<PressMonitor> monitor(std::function<void(QPoint)>) override { return {}; }
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
    void save(const CaptureFrame &frame, Pace pace) override
    {
        journal.append(entry(pace == Pace::BeforeReturn ? "save now" : "save", frame));
    }
    QFuture<void> allWritten() override { return {}; } // finished
};

struct FakeWindowCoordinator : Journalist<WindowCoordinatorProtocol> {
    using Journalist::Journalist;
    FrameHandler onConfirm;
    Handler onCancel;
    std::expected<void, Error> opened; ///< what the selector comes to
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
    std::optional<bool> isSharingWindowWatched() const override { return std::nullopt; }
    void setOnWatchedChanged(Handler) override { }
};

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
    QCoro::Task<StartResult> moveCapture(CaptureFrame frame) override
    {
        journal.append(entry("move", frame));
        return pend(starts);
    }
    void pauseCapture(PausePicture picture) override
    {
        journal.append(picture == PausePicture::Plain ? QStringLiteral("blank")
                                                      : QStringLiteral("pause"));
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

/** A view model with a fake for everything. The services live as long as the view model. */
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
            std::unique_ptr<CaptureServiceProtocol>(capture), desktop.backend(), alerts, identity);
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
