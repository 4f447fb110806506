// SPDX-License-Identifier: MIT
#include "tests/support/Fakes.h"

#include <QTest>

using namespace glimmerpane;

namespace
{

using Frame = std::optional<CaptureFrame>;

constexpr CaptureFrame stored{10, 20, 300, 200};
constexpr CaptureFrame chosen{-5, 0.5, 600, 400};

/** What an observer sees each time it is told of a change. */
struct Seen {
    CaptureFrame frame;
    bool selectorOpen = false;
    std::size_t saves = 0;

    friend bool operator==(const Seen &, const Seen &) = default;
};

std::unique_ptr<std::vector<Seen>> observe(const FakeApplication &app)
{
    auto seen = std::make_unique<std::vector<Seen>>();
    QObject::connect(
        app.viewModel.get(), &MainViewModel::objectWillChange, [&app, list = seen.get()] {
            list->push_back({app.viewModel->currentFrame(), app.viewModel->isFrameSelectorOpen(),
                             app.repository->saves.size()});
        });
    return seen;
}

} // namespace

class CaptureAreaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void area_isNotSaved_whenItIsTheFirst_data();
    void area_isNotSaved_whenItIsTheFirst();
    void update_takesTheArea_whenAllFourAreNumbers_data();
    void update_takesTheArea_whenAllFourAreNumbers();
    void update_tellsAndSaves_whenNothingChanges();
    void selector_startsFromAnArea_data();
    void selector_startsFromAnArea();
    void selector_savesTheArea_whenConfirmed();
    void selector_keepsTheArea_whenCancelled();
    void selector_doesNothing_whenTheViewModelIsGone();
};

void CaptureAreaTest::area_isNotSaved_whenItIsTheFirst_data()
{
    QTest::addColumn<Frame>("saved");
    QTest::addColumn<std::optional<Rect>>("display");
    QTest::addColumn<CaptureFrame>("expected");
    const std::optional<Rect> display = Rect{0, 0, 1440, 900};
    QTest::newRow("stored") << Frame(stored) << display << stored;
    QTest::newRow("stored, no display") << Frame(stored) << std::optional<Rect>() << stored;
    QTest::newRow("display") << Frame() << display << CaptureFrame{0, 0, 1440, 900};
    QTest::newRow("neither") << Frame() << std::optional<Rect>() << CaptureFrame{0, 0, 1920, 1080};
}

void CaptureAreaTest::area_isNotSaved_whenItIsTheFirst()
{
    QFETCH(Frame, saved);
    QFETCH(std::optional<Rect>, display);
    QFETCH(CaptureFrame, expected);
    const FakeApplication app(saved, display);
    QCOMPARE(app.viewModel->currentFrame(), expected);
    QVERIFY(app.repository->saves.empty());
    QVERIFY(!app.viewModel->isFrameSelectorOpen() && !app.viewModel->isSharingWindowOpen());
    QCOMPARE(app.desktop.contentRequests.load(), 0);
}

void CaptureAreaTest::update_takesTheArea_whenAllFourAreNumbers_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<Frame>("expected");
    const auto row = [](const char *texts, Frame expected = std::nullopt) {
        QTest::newRow(texts) << QString::fromLatin1(texts).split(u'|') << expected;
    };
    row("10|20|300|200", CaptureFrame{10, 20, 300, 200});
    row("-5|0|0|1e3", CaptureFrame{-5, 0, 0, 1000});
    row("0.5|0x10|inf|-1", CaptureFrame{0.5, 16, std::numeric_limits<double>::infinity(), -1});
    row("10|20|300|abc");
    row("10|20|300|");
    row(" 10|20|300|200");
    row("10|2 0|300|200");
    row("10|20|300,5|200");
}

void CaptureAreaTest::update_takesTheArea_whenAllFourAreNumbers()
{
    QFETCH(QStringList, texts);
    QFETCH(Frame, expected);
    const FakeApplication app(chosen);
    const auto seen = observe(app);
    app.viewModel->updateFrame(texts[0], texts[1], texts[2], texts[3]);
    QCOMPARE(app.viewModel->currentFrame(), expected.value_or(chosen));
    QCOMPARE(app.repository->saves.size(), expected ? 1U : 0U);
    QCOMPARE(app.repository->stored, expected.value_or(chosen));
    QCOMPARE(*seen, std::vector<Seen>(expected ? 1 : 0, Seen{chosen, false, 0}));
}

void CaptureAreaTest::update_tellsAndSaves_whenNothingChanges()
{
    const FakeApplication app(stored);
    const auto seen = observe(app);
    for (int i = 0; i < 2; ++i) {
        app.viewModel->updateFrame(QStringLiteral("10"), QStringLiteral("20"),
                                   QStringLiteral("300"), QStringLiteral("200"));
    }
    QCOMPARE(*seen, (std::vector{Seen{stored, false, 0}, Seen{stored, false, 1}}));
    QCOMPARE(app.repository->saves, (std::vector{stored, stored}));
}

void CaptureAreaTest::selector_startsFromAnArea_data()
{
    QTest::addColumn<bool>("reset");
    QTest::addColumn<Frame>("expected");
    QTest::newRow("set") << false << Frame(stored);
    QTest::newRow("reset") << true << Frame();
}

void CaptureAreaTest::selector_startsFromAnArea()
{
    QFETCH(bool, reset);
    QFETCH(Frame, expected);
    const FakeApplication app(stored);
    const auto seen = observe(app);
    app.coordinator->initialFrame = chosen;
    reset ? app.viewModel->resetFrameSelector() : app.viewModel->openFrameSelector();
    QVERIFY(app.viewModel->isFrameSelectorOpen());

    app.viewModel->openFrameSelector();
    app.viewModel->resetFrameSelector();
    QCOMPARE(app.coordinator->selectorsShown, 1);
    QCOMPARE(app.coordinator->initialFrame, expected);
    QCOMPARE(*seen, std::vector{Seen(stored, false, 0)});
}

void CaptureAreaTest::selector_savesTheArea_whenConfirmed()
{
    const FakeApplication app(stored);
    app.viewModel->openFrameSelector();
    const auto seen = observe(app);
    app.coordinator->onConfirm(chosen);
    QCOMPARE(*seen, (std::vector{Seen{stored, true, 0}, Seen{chosen, true, 1}}));
    QCOMPARE(app.viewModel->currentFrame(), chosen);
    QCOMPARE(app.repository->saves, std::vector{chosen});
    QVERIFY(!app.viewModel->isFrameSelectorOpen());

    app.viewModel->openFrameSelector();
    QCOMPARE(app.coordinator->initialFrame, chosen);
}

void CaptureAreaTest::selector_keepsTheArea_whenCancelled()
{
    const FakeApplication app(stored);
    app.viewModel->resetFrameSelector();
    app.coordinator->onCancel();
    QVERIFY(!app.viewModel->isFrameSelectorOpen());
    QCOMPARE(app.viewModel->currentFrame(), stored);
    QVERIFY(app.repository->saves.empty());

    app.viewModel->openFrameSelector();
    QCOMPARE(app.coordinator->selectorsShown, 2);
}

void CaptureAreaTest::selector_doesNothing_whenTheViewModelIsGone()
{
    FakeApplication app(stored);
    app.viewModel->openFrameSelector();
    const auto confirm = app.coordinator->onConfirm;
    const auto cancel = app.coordinator->onCancel;
    app.viewModel.reset();
    confirm(chosen);
    cancel();
}

QTEST_GUILESS_MAIN(CaptureAreaTest)
#include "CaptureAreaTest.moc"
