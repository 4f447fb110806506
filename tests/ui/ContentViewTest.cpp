// SPDX-License-Identifier: MIT
#include "ui/ContentView.h"
#include "tests/support/Fakes.h"
#include "tests/ui/PrivateDisplay.h"
#include "ui/FlatStyle.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

#include <algorithm>
#include <array>
#include <cmath>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame area{10, 20, 300, 200};

struct ShownView : FakeApplication {
    explicit ShownView(const CaptureFrame &stored = area)
        : FakeApplication(stored)
    {
        view.show();
        view.activateWindow();
        isActive = QTest::qWaitForWindowActive(&view);
        QCoreApplication::processEvents();
    }

    QLineEdit &field(const char *name) const
    {
        return *view.findChild<QLineEdit *>(QLatin1String(name));
    }
    QPushButton &button(const char *name) const
    {
        return *view.findChild<QPushButton *>(QLatin1String(name));
    }
    QStringList texts() const
    {
        return {field("xField").text(), field("yField").text(), field("widthField").text(),
                field("heightField").text()};
    }

    ContentView view{*viewModel};
    bool isActive = false;
};

/** Equal by value, in the sign of zero, and in being no number. */
bool isIdentical(double one, double other)
{
    return (std::isnan(one) && std::isnan(other))
        || (one == other && std::signbit(one) == std::signbit(other));
}

void startSession(ShownView &shown)
{
    shown.viewModel->startSharing();
    QTRY_VERIFY(shown.viewModel->isSharingWindowOpen());
    QCoreApplication::processEvents();
}

/** What fills the button, left of its label. */
QColor fillOf(QPushButton &button)
{
    return button.grab().toImage().pixelColor(12, button.height() / 2);
}

bool showsWhite(QPushButton &button)
{
    const QImage image = button.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
    return std::any_of(pixels, pixels + image.sizeInBytes() / 4,
                       [](QRgb pixel) { return pixel == 0xffffffff; });
}

QString hueOf(const QColor &color)
{
    if (color.saturation() < 40) {
        return QStringLiteral("grey");
    }
    return color.red() > color.blue() ? QStringLiteral("red") : QStringLiteral("blue");
}

} // namespace

class ContentViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new FlatStyle(QStringLiteral("fusion"))); }

    void firstShow_fillsFieldsWithWholeNumbers_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("half to even, down") << 0.5 << QStringLiteral("0");
        QTest::newRow("half to even, up") << 1.5 << QStringLiteral("2");
        QTest::newRow("half to even, down again") << 2.5 << QStringLiteral("2");
        QTest::newRow("negative half") << -1.5 << QStringLiteral("-2");
        QTest::newRow("sign of zero") << -0.4 << QStringLiteral("-0");
        QTest::newRow("no exponent") << 1e21 << QStringLiteral("1000000000000000000000");
    }
    void firstShow_fillsFieldsWithWholeNumbers()
    {
        QFETCH(double, value);
        QFETCH(QString, text);
        const ShownView shown({value, 20, 300, 200});
        QCOMPARE(shown.texts(),
                 (QStringList{text, QStringLiteral("20"), QStringLiteral("300"),
                              QStringLiteral("200")}));
        // The rounded numbers are the area from now on.
        QVERIFY(isIdentical(shown.viewModel->currentFrame().x, text.toDouble()));
        QCOMPARE(shown.repository->saves.size(), 1);
    }

    void typing_commitsEachKeystroke_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("width"); // 300 before
        QTest::addColumn<bool>("isSaved");
        const auto row = [](const char *keys, const char *text, double width, bool isSaved) {
            QTest::newRow(keys) << QString::fromLatin1(keys) << QString::fromLatin1(text) << width
                                << isSaved;
        };
        row("640", "640", 640, true);
        row("abc", "abc", 300, false);
        row(" 12", " 12", 300, false);
        row("1e", "1e", 1, true);
        row("1e3", "1000", 1000, true);
        row("12.6", "13", 13, true);
        row("-0.4", "-0", -0.0, true);
        row("nan", "nan", std::nan(""), true);
        row("infinity", "infinity", HUGE_VAL, true);
        row("\b", "", 300, false); // the first key replaces the whole text
    }
    void typing_commitsEachKeystroke()
    {
        QFETCH(QString, keys);
        QFETCH(QString, text);
        QFETCH(double, width);
        QFETCH(bool, isSaved);
        const ShownView shown;
        shown.repository->saves.clear();
        QLineEdit &field = shown.field("widthField");
        QTest::mouseClick(&field, Qt::LeftButton);
        field.selectAll();
        for (const QChar key : keys) {
            QTest::keyClick(&field, key.toLatin1());
            QCoreApplication::processEvents();
        }
        QCOMPARE(
            shown.texts(),
            (QStringList{QStringLiteral("10"), QStringLiteral("20"), text, QStringLiteral("200")}));
        const CaptureFrame &frame = shown.viewModel->currentFrame();
        QVERIFY2(isIdentical(frame.width, width), qPrintable(QString::number(frame.width)));
        QCOMPARE((std::array{frame.x, frame.y, frame.height}), (std::array{10.0, 20.0, 200.0}));
        QCOMPARE(!shown.repository->saves.empty(), isSaved);
        QVERIFY(!isSaved || isIdentical(shown.repository->saves.back().width, width));
    }

    void keystroke_isSaved_beforeTheNextTurn()
    {
        const ShownView shown;
        QTest::keyClicks(&shown.field("heightField"), QStringLiteral("5"));
        QCOMPARE(shown.repository->saves.back(), (CaptureFrame{10, 20, 300, 2005}));
    }

    void newArea_isNeverMixedWithTheOldOne_data()
    {
        QTest::addColumn<bool>("typesMeanwhile");
        QTest::newRow("alone") << false;
        QTest::newRow("before a keystroke") << true;
    }
    void newArea_isNeverMixedWithTheOldOne()
    {
        QFETCH(bool, typesMeanwhile);
        const ShownView shown;
        shown.repository->saves.clear();
        shown.viewModel->frameSelected({1.4, 2.6, 640.2, 480.9});
        if (typesMeanwhile) {
            QTest::keyClicks(&shown.field("widthField"), QStringLiteral("7"));
        }
        QCoreApplication::processEvents();
        for (const CaptureFrame &saved : shown.repository->saves) {
            QCOMPARE(
                (std::array{std::round(saved.x), std::round(saved.y), std::round(saved.height)}),
                (std::array{1.0, 3.0, 481.0}));
        }
        const double width = typesMeanwhile ? 3007 : 640;
        QCOMPARE(shown.repository->saves.back(), (CaptureFrame{1, 3, width, 481}));
        QCOMPARE(shown.texts(),
                 (QStringList{QStringLiteral("1"), QStringLiteral("3"), QString::number(width),
                              QStringLiteral("481")}));
    }

    void newArea_keepsCursor_whereTheTextStaysTheSame()
    {
        const ShownView shown;
        shown.field("widthField").setCursorPosition(1);
        shown.viewModel->frameSelected({7, 8, 300, 9});
        QTRY_COMPARE(shown.field("xField").text(), QStringLiteral("7"));
        QCOMPARE(shown.field("widthField").cursorPosition(), 1);
    }

    void buttons_followTheState_data()
    {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("areIdleCommandsEnabled");
        QTest::addColumn<bool>("isStopEnabled");
        QTest::addColumn<QString>("startHue");
        QTest::addColumn<QString>("stopHue");
        const QString grey = QStringLiteral("grey");
        QTest::newRow("idle") << QStringLiteral("idle") << true << false << QStringLiteral("blue")
                              << grey;
        QTest::newRow("selector") << QStringLiteral("selector") << false << false << grey << grey;
        QTest::newRow("sharing") << QStringLiteral("sharing") << false << true << grey
                                 << QStringLiteral("red");
    }
    void buttons_followTheState()
    {
        QFETCH(QString, state);
        QFETCH(bool, areIdleCommandsEnabled);
        QFETCH(bool, isStopEnabled);
        QFETCH(QString, startHue);
        QFETCH(QString, stopHue);
        ShownView shown;
        if (state == QStringLiteral("selector")) {
            shown.viewModel->openFrameSelector();
        } else if (state == QStringLiteral("sharing")) {
            startSession(shown);
        }
        QCoreApplication::processEvents();
        for (const char *name : {"startButton", "setAreaButton", "resetAreaButton"}) {
            QCOMPARE(shown.button(name).isEnabled(), areIdleCommandsEnabled);
        }
        QPushButton &stop = shown.button("stopButton");
        QCOMPARE(stop.isEnabled(), isStopEnabled);
        QCOMPARE(hueOf(fillOf(shown.button("startButton"))), startHue);
        QCOMPARE(hueOf(fillOf(stop)), stopHue);
        QCOMPARE(showsWhite(stop), isStopEnabled);
        for (const char *name : {"xField", "yField", "widthField", "heightField"}) {
            QVERIFY(shown.field(name).isEnabled());
        }
    }

    void startButton_startsCapture_whenClicked()
    {
        const ShownView shown;
        QTest::mouseClick(&shown.button("startButton"), Qt::LeftButton);
        QTRY_COMPARE(shown.capture->starts.size(), 1);
        QCOMPARE(shown.capture->starts.front()->frame, area);
    }

    void stopButton_removesTheOutputWindow_whenClicked()
    {
        ShownView shown;
        startSession(shown);
        QTest::mouseClick(&shown.button("stopButton"), Qt::LeftButton);
        QCOMPARE(shown.coordinator->windowsClosed, 1);
        QTRY_VERIFY(shown.button("startButton").isEnabled());
        QVERIFY(!shown.button("stopButton").isEnabled());
    }

    void areaButtons_openTheSelector_whenClicked_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("startsFromTheArea");
        QTest::newRow("set") << QStringLiteral("setAreaButton") << true;
        QTest::newRow("reset") << QStringLiteral("resetAreaButton") << false;
    }
    void areaButtons_openTheSelector_whenClicked()
    {
        QFETCH(QString, button);
        QFETCH(bool, startsFromTheArea);
        const ShownView shown;
        auto &clicked = shown.button(qPrintable(button));
        QTest::mouseClick(&clicked, Qt::LeftButton);
        QCoreApplication::processEvents();
        QTest::mouseClick(&clicked, Qt::LeftButton);
        QCOMPARE(shown.coordinator->selectorsShown, 1);
        QCOMPARE(shown.coordinator->initialFrame,
                 startsFromTheArea ? std::optional(area) : std::nullopt);
        shown.coordinator->onCancel();
        QTRY_VERIFY(clicked.isEnabled());
        QCOMPARE(shown.viewModel->currentFrame(), area);
    }

    void emptyArea_endsEditing_whenClickedOnce()
    {
        const ShownView shown;
        QVERIFY(shown.isActive);
        QWindow *window = shown.view.windowHandle();
        QLineEdit &field = shown.field("xField");
        const auto *empty = shown.view.findChild<QWidget *>(QStringLiteral("emptyArea"));
        const auto centreOf = [&](const QWidget &widget) {
            return widget.mapTo(&shown.view, widget.rect().center());
        };
        QTest::mouseClick(window, Qt::LeftButton, {}, centreOf(field));
        QTRY_VERIFY(field.hasFocus());
        QTest::keyClick(window, '5');
        QTest::mouseClick(window, Qt::LeftButton, {}, centreOf(*empty));
        QTRY_VERIFY(!field.hasFocus());
        QTest::keyClick(window, '6');
        QCOMPARE(shown.viewModel->currentFrame().x, field.text().toDouble());
        QVERIFY(field.text().contains(u'5') && !field.text().contains(u'6'));
    }

    void manyChanges_refreshOnce_inOneTurn()
    {
        const ShownView shown;
        shown.repository->saves.clear();
        for (int i = 1; i <= 5; ++i) {
            shown.viewModel->frameSelected({i + 0.25, 0, 100, 100});
        }
        QCoreApplication::processEvents();
        QCOMPARE(shown.repository->saves.size(), 6); // the five, and the last one rounded
        QCOMPARE(shown.viewModel->currentFrame().x, 5.0);
    }
};

int main(int argc, char **argv)
{
    return testing::runOnPrivateDisplay<ContentViewTest>(argc, argv);
}

#include "ContentViewTest.moc"
