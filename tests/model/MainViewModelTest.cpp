// SPDX-License-Identifier: MIT
#include "rig/ChildProcess.h"
#include "tests/support/Fakes.h"

#include <QTest>

#include <tuple>

using namespace glimmerpane;

namespace
{

using Area = std::optional<CaptureFrame>;

constexpr CaptureFrame saved{1, 2, 3, 4};
constexpr CaptureFrame chosen{5, 6, 7, 8};

/** A view model whose observer writes into the journal too. Requests for the content wait. */
struct Session : FakeApplication {
    explicit Session(Area area = saved, bool hasDisplay = true)
        : FakeApplication(area, hasDisplay)
    {
        desktop.isHeld = true;
        QObject::connect(viewModel.get(), &MainViewModel::objectWillChange,
                         [this] { journal.append(QStringLiteral("told")); });
    }
};

/** Captures what is printed on standard output. */
struct StandardOutput {
    const FileDescriptor own{dup(STDOUT_FILENO)};
    const FileDescriptor printed{memfd_create("printed", MFD_CLOEXEC)};

    StandardOutput() { dup2(printed.get(), STDOUT_FILENO); }
    ~StandardOutput() { dup2(own.get(), STDOUT_FILENO); }
};

/** Counts the turns of the half-second window watch. */
struct WatchTurns : QObject {
    int count = 0;

    WatchTurns() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        const auto *timer = qobject_cast<QTimer *>(receiver);
        count += event->type() == QEvent::Timer && timer && timer->interval() == 500;
        return false;
    }
};

using Step = std::function<void(Session &)>;

const Step selectArea = [](Session &s) { s.viewModel->openFrameSelector(); };
const Step reset = [](Session &s) { s.viewModel->resetFrameSelector(); };
const Step confirm = [](Session &s) { s.coordinator->onConfirm(chosen); };
const Step cancel = [](Session &s) { s.coordinator->onCancel(); };
const Step refuseSelector = [](Session &s) {
    s.coordinator->opened = std::unexpected(Error{QStringLiteral("why"), {}});
    QObject::connect(s.viewModel.get(), &MainViewModel::frameSelectorShown,
                     [&s](const QString &error) { s.journal.append(error); });
};
const Step deny = [](Session &s) { s.desktop.denyContent(); };
const Step offerNoWay = [](Session &s) {
    s.desktop.content = std::unexpected(Error{QStringLiteral("why"), {}, Outcome::impossible});
};
const Step permit = [](Session &s) { s.desktop.content = ShareableContent(); };
const Step loseSettings = [](Session &s) { s.desktop.hasSettings = false; };
const Step dismiss = [](Session &s) { s.alerts.answer = -1; };
const Step start = [](Session &s) { s.viewModel->startSharing(); };
const Step answer = [](Session &s) { s.desktop.answerRequests(); };
const Step succeed = [](Session &s) { s.capture->starts.back()->complete({}); };
const Step fail = [](Session &s) {
    const Error failure{.text = QStringLiteral("why"), .log = {}};
    s.capture->starts.back()->complete(std::unexpected(failure));
};
const Step stop = [](Session &s) { s.viewModel->stopSharing(); };
const Step closeWindow = [](Session &s) { s.coordinator->isVisible = false; };
const Step end
    = [](Session &s) { s.capture->onCaptureEnded({.text = QStringLiteral("why"), .log = {}}); };
const Error endedByUser{.text = {}, .log = {}, .outcome = Outcome::cancelled};
const Step endOutside = [](Session &s) { s.capture->onCaptureEnded(endedByUser); };
const Step failOutside
    = [](Session &s) { s.capture->starts.back()->complete(std::unexpected(endedByUser)); };
const Step watch = [](Session &) {
    const WatchTurns turns;
    QTRY_VERIFY(turns.count > 0);
};
const Step endNow = [](Session &s) { s.viewModel->endSharing(); };
Step moveTo(const CaptureFrame &place, bool saves = false)
{
    return [=](Session &s) { s.viewModel->moveSharing(place, saves); };
}
const Step move = moveTo(chosen);
const Step halt = [](Session &s) { std::ignore = s.viewModel->pauseSharing(PausePicture::Latest); };
const Step blank = [](Session &s) { std::ignore = s.viewModel->pauseSharing(PausePicture::Plain); };
const Step resume = [](Session &s) { s.viewModel->resumeSharing(); };
const Step decline = [](Session &s) { s.desktop.content = std::unexpected(endedByUser); };
const Step quit = [](Session &s) {
    s.journal.append(s.viewModel->mayClose() ? QStringLiteral("quits") : QStringLiteral("stays"));
};
const Step agree = [](Session &s) { s.alerts.answer = 1; };
/** The steps are done while an alert is up. */
Step duringAlert(const std::vector<Step> &steps)
{
    return [steps](Session &s) {
        s.alerts.whileUp = [&s, steps] {
            for (const Step &step : steps) {
                step(s);
            }
        };
    };
}
const Step ask = [](Session &s) { s.viewModel->checkForUpdates(); };
Step update(const char *address, bool canUpdate = true)
{
    return [=](Session &s) {
        s.updates->checks.back()->complete(UpdateInfo{.lastAppVersion = QStringLiteral("1.5.0"),
                                                      .downloadUrl = QLatin1String(address),
                                                      .canUpdate = canUpdate});
    };
}
const Step failCheck = [](Session &s) {
    const Error failure{.text = {}, .log = QStringLiteral("two\nlines")};
    s.updates->checks.back()->complete(std::unexpected(failure));
};
// The view model goes; then comes all that can still come for it.
const Step leave = [](Session &s) {
    const auto starts = s.capture->starts;
    const auto checks = s.updates->checks;
    const auto ended = s.capture->onCaptureEnded;
    const auto confirmed = s.coordinator->onConfirm;
    const auto cancelled = s.coordinator->onCancel;
    s.viewModel.reset();
    answer(s);
    for (const auto &started : starts) {
        started->complete(std::unexpected(Error{}));
    }
    for (const auto &check : checks) {
        check->complete(std::unexpected(Error{}));
    }
    ended({});
    confirmed(chosen);
    cancelled();
};

} // namespace

class MainViewModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstArea_isNotSaved()
    {
        for (const auto &[area, hasDisplay, expected] :
             {std::tuple(Area(saved), true, saved),
              {Area(), true, CaptureFrame{0, 0, 1280, 720}},
              {Area(), false, CaptureFrame{0, 0, 1920, 1080}}}) {
            const Session session(area, hasDisplay);
            QCOMPARE(session.viewModel->currentFrame(), expected);
            QCOMPARE(session.journal, QStringList());
        }
    }

    void steps_haveTheirEffects_data()
    {
        QTest::addColumn<std::vector<Step>>("steps");
        QTest::addColumn<QString>("journal");
        QTest::addColumn<QString>("open");
        const QString opening = QStringLiteral("told, window 1 2 3 4, capture 1 2 3 4");
        const QString failure
            = QStringLiteral("warning|Screen Capture|Failed to start capture: why|OK");
        const QString denial = QStringLiteral(
            "warning|Screen Recording Permission Required|Please grant Screen Recording permission "
            "in "
            "System Settings > Privacy & Security > Screen Recording\n\ndenied|Open System "
            "Settings|Cancel");
        const QString ending
            = QStringLiteral("notify Sharing Has Ended, warning|Sharing Has "
                             "Ended|Others in your call no longer see the area. why|OK");
        const QString offer = QStringLiteral("info|Update Available|Current version: N/A\nNew "
                                             "version: 1.5.0|Download New Version|Cancel");
        const QString question
            = QStringLiteral("warning|Stop Sharing and Quit?|Others in your call will no "
                             "longer see the shared area.|Keep Sharing|Stop and Quit");
        const auto row = [&](const char *name, const std::vector<Step> &steps, const char *journal,
                             const char *open = "") {
            QString text = QString::fromLatin1(journal).replace(u'*', opening);
            text.replace(u'!', failure).replace(u'?', denial).replace(u'+', offer);
            text.replace(u'#', question).replace(u'~', ending);
            QTest::newRow(name) << steps << text << open;
        };
        row("confirm", {selectArea, confirm, selectArea},
            "told, select 1 2 3 4, told, save now 5 6 7 8, told, told, select 5 6 7 8", "selector");
        row("cancel", {selectArea, cancel, selectArea, cancel, reset, cancel},
            "told, select 1 2 3 4, told, told, select 1 2 3 4, told, told, select, told");
        row("select while open", {reset, selectArea, reset}, "told, select", "selector");

        row("selector refused", {refuseSelector, reset, selectArea},
            "told, select, told, why, warning|Set Area|why|OK, "
            "told, select 1 2 3 4, told, why, warning|Set Area|why|OK");

        row("start", {start, answer, succeed, watch}, "*", "session");
        row("start while one starts or runs",
            {start, start, answer, start, answer, succeed, start, answer}, "*", "session");
        row("stop while none runs", {stop, end}, "");
        row("stop", {start, answer, succeed, stop, quit}, "*, close, quits", "session");
        row("stop, until the watch", {start, answer, succeed, stop, watch, start, answer},
            "*, close, stop, told, *", "session");
        row("stop while it starts", {start, answer, stop, watch, succeed}, "*, close, stop, told");
        row("close", {start, answer, succeed, closeWindow, watch}, "*, stop, told");
        row("close while it starts", {start, answer, closeWindow, watch, succeed}, "*, stop, told");
        row("end", {start, answer, succeed, end, start, answer}, "*, close, told, ~, *", "session");
        row("end while it starts", {start, answer, end, succeed}, "*, close, told, ~");
        row("end outside", {start, answer, succeed, endOutside, start, answer}, "*, close, told, *",
            "session");
        row("end outside while it starts", {start, answer, failOutside}, "*, told, close");
        row("stop at once", {endNow, start, answer, succeed, endNow, start, answer},
            "*, close, stop, told, *", "session");
        row("stop at once during the check", {start, endNow, answer}, "");
        row("stop at once during the alert", {duringAlert({endNow}), start, answer, fail},
            "*, !, close, stop, told, told, close");
        row("fail", {start, answer, fail, start, answer}, "*, !, told, close, *", "session");
        row("close during the alert", {duringAlert({closeWindow, watch}), start, answer, fail},
            "*, !, told, close");
        row("quit while none runs", {selectArea, quit}, "told, select 1 2 3 4, quits", "selector");
        row("quit", {start, answer, succeed, quit, agree, quit, dismiss, quit},
            "*, #, stays, #, quits, #, stays", "session");
        row("quit while it starts", {agree, start, quit, answer, quit}, "#, quits, *, #, quits",
            "session");
        row("quit and stop during the question",
            {duringAlert({quit, stop, watch}), start, answer, succeed, quit, quit},
            "*, #, stays, close, stop, told, stays, quits");
        row("denied", {deny, start, answer}, "?, settings");
        row("denied, without a settings program", {deny, loseSettings, start, answer},
            "?, settings, warning|Screen Recording|Glimmerpane does not know the settings program "
            "of this desktop.\n\ndenied|OK");
        row("no way to record", {offerNoWay, start, answer},
            "warning|Screen Recording Is Not Possible Here|why|OK");
        row("denied, later permitted", {deny, dismiss, start, answer, permit, start, answer},
            "?, *", "session");
        row("start while selecting", {selectArea, start, answer}, "told, select 1 2 3 4",
            "selector");
        row("select while it starts", {start, selectArea, reset, answer}, "*", "session");
        row("area chosen while it runs", {start, answer, succeed, selectArea, confirm},
            "*, told, select 1 2 3 4, told, save 5 6 7 8, told", "session");

        const std::vector<Step> sharing{start, answer, succeed};
        const auto sharingRow = [&](const char *name, std::vector<Step> steps, const char *journal,
                                    const char *open = "session") {
            steps.insert(steps.begin(), sharing.begin(), sharing.end());
            row(name, steps, journal, open);
        };
        sharingRow("move", {move, succeed, halt, resume, answer},
                   "*, move 5 6 7 8, pause, capture 5 6 7 8");
        sharingRow("move and save", {moveTo(chosen, true), succeed},
                   "*, move 5 6 7 8, told, save 5 6 7 8");
        sharingRow("move fails", {moveTo(chosen, true), fail, halt, resume, answer},
                   "*, move 5 6 7 8, pause, capture 1 2 3 4");
        sharingRow("move refused", {moveTo({-9, 0, 5, 5}, true), moveTo({0, 0, 0, 5}, true)}, "*");
        sharingRow("moves on the way",
                   {move, moveTo({1, 1, 1, 1}), moveTo(saved), succeed, succeed},
                   "*, move 5 6 7 8, move 1 2 3 4");
        sharingRow("move while paused", {halt, move, resume, answer, succeed},
                   "*, pause, capture 5 6 7 8");
        sharingRow("pause during a move", {move, halt, succeed, resume, answer},
                   "*, move 5 6 7 8, pause, capture 5 6 7 8");
        sharingRow("move during the resumption", {halt, resume, answer, move, succeed, succeed},
                   "*, pause, capture 1 2 3 4, move 5 6 7 8");
        sharingRow("move at the end", {move, endNow, succeed}, "*, move 5 6 7 8, close, stop, told",
                   "");
        sharingRow("pause twice", {halt, halt, blank, blank, resume, resume, answer},
                   "*, pause, blank, blank, capture 1 2 3 4");
        sharingRow("pause again", {halt, resume, halt, answer, resume, answer, halt, succeed},
                   "*, pause, pause, capture 1 2 3 4, pause");
        sharingRow("stop while paused", {halt, resume, endNow, answer, resume, halt, move},
                   "*, pause, close, stop, told", "");
        sharingRow("close while paused", {halt, closeWindow, resume, watch}, "*, pause, stop, told",
                   "");
        sharingRow("resumption fails", {halt, resume, answer, fail, watch},
                   "*, pause, capture 1 2 3 4, close, told, ~", "");
        sharingRow("resumption declined", {halt, decline, resume, answer, watch}, "*, pause");
        row("pause while it starts", {start, answer, halt, succeed, resume, answer},
            "*, pause, capture 1 2 3 4", "session");
        row("pause during the check", {start, blank, answer, resume, answer},
            "told, window 1 2 3 4, blank, capture 1 2 3 4", "session");
        row("pause and resume during the check", {start, halt, resume, answer}, "*", "session");
        row("pause while none runs", {halt, move, resume, start, answer}, "*", "session");

        const char *const download = "https://x.example/1.5.0";
        row("update", {ask, update(download)}, "ask 01ab N/A, +, open https://x.example/1.5.0");
        row("update declined", {dismiss, ask, update(download)}, "ask 01ab N/A, +");
        row("no update", {ask, update(download, false)}, "ask 01ab N/A");
        row("update from no URL", {ask, update("https://[x/")}, "ask 01ab N/A, +");
        row("update from no host", {ask, update("x/1.5.0")}, "ask 01ab N/A, +");
        row("update check fails", {ask, failCheck},
            "ask 01ab N/A, Update check failed: two lines\n");
        row("update while sharing", {start, answer, succeed, ask, update(""), watch},
            "*, ask 01ab N/A, +", "session");

        row("gone while asking", {start, answer, reset, ask, leave},
            "*, told, select, ask 01ab N/A");
        row("gone before the answer", {reset, cancel, start, leave}, "told, select, told");
        sharingRow("gone during a move", {reset, moveTo(chosen, true), leave},
                   "*, told, select, move 5 6 7 8", "");
        sharingRow("gone during a resumption", {reset, halt, resume, answer, leave},
                   "*, told, select, pause, capture 1 2 3 4", "");
        row("gone while it starts", {start, answer, reset, leave}, "*, told, select");
    }
    void steps_haveTheirEffects()
    {
        QFETCH(std::vector<Step>, steps);
        QFETCH(QString, journal);
        QFETCH(QString, open);
        Session session;
        const StandardOutput output;
        for (const Step &step : steps) {
            step(session);
        }
        if (const QByteArray printed = testing::contentOf(output.printed); !printed.isEmpty()) {
            session.journal.append(QString::fromUtf8(printed));
        }
        QCOMPARE(session.journal.join(QStringLiteral(", ")), journal);
        const MainViewModel *left = session.viewModel.get();
        QCOMPARE(left && left->isFrameSelectorOpen(), open == QStringLiteral("selector"));
        QCOMPARE(left && left->isSharingWindowOpen(), open == QStringLiteral("session"));
    }

    void session_tellsWhatItShows()
    {
        Session session;
        const MainViewModel &model = *session.viewModel;
        int frames = 0;
        int pauses = 0;
        connect(&model, &MainViewModel::sharedFrameChanged, [&] { ++frames; });
        connect(&model, &MainViewModel::pausedChanged, [&] { ++pauses; });
        const Step displaysChange = [](Session &s) { s.viewModel->displaysChanged(); };
        // How often each has changed after the step, and what they are then.
        for (const auto &[step, frameChanges, frame, pauseChanges, isPaused] :
             {std::tuple(displaysChange, 0, Area(), 0, false),
              {start, 0, Area(), 0, false},
              {answer, 0, Area(), 0, false},
              {succeed, 1, Area(saved), 0, false},
              {displaysChange, 2, Area(saved), 0, false},
              {move, 2, Area(saved), 0, false},
              {succeed, 3, Area(chosen), 0, false},
              {halt, 3, Area(chosen), 1, true},
              {moveTo(saved), 4, Area(saved), 1, true},
              {resume, 4, Area(saved), 1, true},
              {answer, 4, Area(saved), 1, true},
              {succeed, 4, Area(saved), 2, false},
              {halt, 4, Area(saved), 3, true},
              {endNow, 5, Area(), 4, false}}) {
            step(session);
            QCOMPARE(frames, frameChanges);
            QCOMPARE(model.sharedFrame(), frame);
            QCOMPARE(pauses, pauseChanges);
            QCOMPARE(model.isPaused(), isPaused);
        }
    }

    void updates_areNotAskedFor_whereTheMachineIsUnknown()
    {
        const FakeApplication application(saved, true, {QStringLiteral("1"), std::nullopt});
        const StandardOutput output;
        application.viewModel->checkForUpdates();
        QCOMPARE(testing::contentOf(output.printed),
                 "Unable to get device serial number for update check\n");
        QCOMPARE(application.journal, QStringList());
    }

    void typedArea_isSavedIfItIsNumbers_andSharedIfItFitsAWindow()
    {
        // The texts, the area that is saved unless they are refused, and why it is not shared.
        for (const auto &[typed, area, flaw] :
             {std::tuple("1|2|3,5|4", "", ""),
              {"1|2|3|4", "1 2 3 4", ""}, // saved although it is the same
              {"10|20.5|0x10|-1e3", "10 20.5 16 -1000", ""},
              {"-inf|inf|.25|.25", "-inf inf 0.25 0.25", "not on any display"},
              {"0|0|16383.7|-16383.7", "0 0 16383.7 -16383.7", ""},
              {"0|0|nan|5", "0 0 nan 5", "finite"},
              {"0|0|5|-inf", "0 0 5 -inf", "finite"},
              {"nan|0|5|5", "nan 0 5 5", "X and Y"},
              {"0|nan|5|5", "0 nan 5 5", "X and Y"},
              {"0|0|5|-.24", "0 0 5 -0.24", "empty"},
              {"0|0|16383.75|5", "0 0 16383.8 5", "too large"},
              {"0|0|5|-1e300", "0 0 5 -1e+300", "too large"}}) {
            Session session;
            session.desktop.scale = 2;
            const QStringList texts = QString::fromLatin1(typed).split(u'|');
            session.viewModel->updateFrame(texts[0], texts[1], texts[2], texts[3]);
            const bool isSaved = *area != '\0';
            const QString shared = QLatin1String(isSaved ? area : "1 2 3 4");
            const QStringList saving{QStringLiteral("told"), QStringLiteral("save ") + shared};
            QCOMPARE(session.journal, isSaved ? saving : QStringList());
            start(session);
            answer(session);
            const QString opening = QStringLiteral("told, window %1, capture %1").arg(shared);
            const QString events = session.journal.join(QStringLiteral(", "));
            QCOMPARE(events.contains(opening), *flaw == '\0');
            QVERIFY2(events.contains(QLatin1String(flaw)), qPrintable(events));
        }
    }
};

QTEST_GUILESS_MAIN(MainViewModelTest)
#include "MainViewModelTest.moc"
