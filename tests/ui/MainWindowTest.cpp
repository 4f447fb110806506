// SPDX-License-Identifier: MIT
#include "ui/MainWindow.h"
#include "tests/support/Fakes.h"
#include "tests/ui/PrivateDisplay.h"
#include "translations/Translations.h"
#include "ui/ContentView.h"
#include "ui/Theme.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTranslator>

#include <set>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame area{10, 20, 300, 200};
constexpr auto buttonNames = {"startButton", "setAreaButton", "resetAreaButton", "stopButton"};
constexpr auto fieldNames = {"xField", "yField", "widthField", "heightField"};

struct ShownWindow : FakeApplication {
    explicit ShownWindow(const CaptureFrame &stored = area)
        : FakeApplication(stored)
    {
        window.show();
        window.move(100, 100);
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCoreApplication::processEvents();
    }

    template<typename Part = QWidget>
    Part &part(const char *name) const
    {
        return *window.findChild<Part *>(QLatin1String(name));
    }

    /** In the window's coordinates. */
    QPoint centreOf(const char *name) const
    {
        return part(name).mapTo(&window, part(name).rect().center());
    }

    void click(const char *name) const
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, centreOf(name));
        QCoreApplication::processEvents();
    }

    /** The texts of the four fields, with a bar between each two. */
    QString texts() const
    {
        QStringList texts;
        for (const char *name : fieldNames) {
            texts.append(part<QLineEdit>(name).text());
        }
        return texts.join(u'|');
    }

    QString enabledButtons() const
    {
        QStringList enabled;
        for (const char *name : buttonNames) {
            if (part(name).isEnabled()) {
                enabled.append(QLatin1String(name));
            }
        }
        return enabled.join(u' ');
    }

    std::set<QRgb> colorsOf(const char *name) const
    {
        const QImage image = part(name).grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
        return {pixels, pixels + image.width() * image.height()};
    }

    MainWindow window{*viewModel, desktop.backend().shell};
};

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstShow_fillsFieldsWithWholeNumbers()
    {
        for (const auto &[value, text] : {std::pair(0.5, "0"),
                                          {1.5, "2"},
                                          {-2.5, "-2"},
                                          {-0.4, "-0"},
                                          {1e21, "1000000000000000000000"}}) {
            const ShownWindow shown({value, 20, 300, 200});
            QCOMPARE(shown.texts(), QLatin1String(text) + QStringLiteral("|20|300|200"));
            // The rounded numbers are the area from now on.
            const CaptureFrame rounded{QByteArray(text).toDouble(), 20, 300, 200};
            QCOMPARE(shown.journal, QStringList(entry("save", rounded)));
        }
    }

    void typing_commitsEachKeystroke()
    {
        // What is typed, the field's text in the end, and the width that is saved, if any.
        for (const auto &[typed, text, saved] : {std::tuple("640", "640", "640"),
                                                 {"abc", "abc", ""},
                                                 {"1e3", "1000", "1000"},
                                                 {"12.6", "13", "13"},
                                                 {"-0.4", "-0", "-0"},
                                                 {"nan", "nan", "nan"},
                                                 {"infinity", "infinity", "inf"},
                                                 {"\b", "", ""}}) { // replaces the whole text
            const ShownWindow shown;
            shown.click("widthField");
            shown.part<QLineEdit>("widthField").selectAll();
            for (const char *key = typed; *key != '\0'; ++key) {
                QTest::keyClick(shown.window.windowHandle(), *key);
                QCoreApplication::processEvents();
            }
            QCOMPARE(shown.texts(), QStringLiteral("10|20|%1|200").arg(QLatin1String(text)));
            const QString width = QLatin1String(*saved != '\0' ? saved : "300");
            QCOMPARE(shown.journal.back(), QStringLiteral("save 10 20 %1 200").arg(width));
            QCOMPARE(shown.journal.size() > 1, *saved != '\0');
            QCOMPARE(entry("save", shown.viewModel->currentFrame()), shown.journal.back());
        }
    }

    void newArea_isNeverMixedWithTheOldOne()
    {
        for (const char *typedMeanwhile : {"", "7"}) {
            ShownWindow shown;
            auto &height = shown.part<QLineEdit>("heightField");
            shown.viewModel->frameSelected({9.25, 9, 300, 480.9});
            QCoreApplication::processEvents();
            height.setCursorPosition(1);
            shown.journal.clear();
            shown.viewModel->frameSelected({7.75, 8, 640, 480.9});
            shown.viewModel->frameSelected({1.4, 2.6, 640.2, 480.9});
            QTest::keyClicks(&shown.part("widthField"), QLatin1String(typedMeanwhile));
            const bool isTyped = *typedMeanwhile != '\0';
            const QString saved = isTyped ? QStringLiteral("save 1 3 3007 481")
                                          : QStringLiteral("save 1 3 640 481");
            QStringList journal{QStringLiteral("save now 7.75 8 640 480.9"),
                                QStringLiteral("save now 1.4 2.6 640.2 480.9")};
            QCOMPARE(shown.journal, isTyped ? journal + QStringList(saved) : journal);
            QCoreApplication::processEvents();
            QCOMPARE(QStringLiteral("save ") + shown.texts().replace(u'|', u' '), saved);
            QCOMPARE(shown.journal, journal + QStringList(saved));
            QCOMPARE(height.cursorPosition(), 1); // its text stayed the same
        }
    }

    void click_reachesTheServicesAndEnablesWhatCanFollow()
    {
        const char *const idle = "startButton setAreaButton resetAreaButton";
        for (const auto &[name, enabled, journal] :
             {std::tuple("title", idle, ""),
              {"setAreaButton", "", "select 10 20 300 200"},
              {"resetAreaButton", "", "select"},
              {"startButton", "stopButton", "window 10 20 300 200, capture 10 20 300 200"}}) {
            ShownWindow shown;
            shown.journal.clear();
            shown.click(name);
            QTRY_COMPARE(shown.enabledButtons(), QLatin1String(enabled));
            shown.click(name);
            QCOMPARE(shown.journal.join(QStringLiteral(", ")), QLatin1String(journal));
            for (const char *field : fieldNames) {
                QVERIFY(shown.part(field).isEnabled());
            }
            const Theme theme = themeFor(shown.window.palette());
            const bool canStart = enabled == idle;
            const bool canStop = shown.part("stopButton").isEnabled();
            QCOMPARE(shown.colorsOf("startButton").contains(theme.accent.rgb()), canStart);
            QCOMPARE(shown.colorsOf("stopButton").contains(theme.danger.rgb()), canStop);
            QCOMPARE(shown.colorsOf("stopButton").contains(theme.onDanger.rgb()), canStop);

            shown.click("stopButton");
            QCOMPARE(shown.journal.contains(QStringLiteral("close")), canStop);
            if (shown.coordinator->onCancel) {
                shown.coordinator->onCancel();
            }
            QTRY_COMPARE(shown.enabledButtons(), QLatin1String(idle));
        }
    }

    void emptyArea_endsEditing_whenClickedOnce()
    {
        const ShownWindow shown;
        shown.click("xField");
        QTest::keyClick(shown.window.windowHandle(), Qt::Key_End);
        QTest::keyClick(shown.window.windowHandle(), '5');
        shown.click("emptyArea");
        QTRY_VERIFY(!shown.part("xField").hasFocus());
        QTest::keyClick(shown.window.windowHandle(), '6');
        QCOMPARE(shown.texts(), QStringLiteral("105|20|300|200"));
    }

    void window_isAsLargeAsItsContent()
    {
        ShownWindow shown;
        const auto *content = shown.window.findChild<ContentView *>();
        QFont font = QApplication::font();
        const int titleHeight = QFontInfo(shown.part("title").font()).pixelSize();
        for (const int scale : {1, 2}) {
            font.setPointSizeF(QApplication::font().pointSizeF() * scale);
            shown.window.setFont(font);
            QTRY_COMPARE(shown.window.size(), content->sizeHint());
            QTRY_COMPARE(content->size(), shown.window.size());
            QCOMPARE(shown.desktop.shape.boundingRect(), shown.window.rect());
            QVERIFY(!shown.desktop.shape.contains(shown.window.rect().bottomRight()));
            QCOMPARE(content->width() == 320, scale == 1);
            QVERIFY(content->height() >= 440);
            const int newTitleHeight = QFontInfo(shown.part("title").font()).pixelSize();
            QVERIFY(newTitleHeight >= titleHeight * scale - 1); // it was not made to fit
            const QRect title = shown.part("title").geometry();
            QVERIFY(!title.intersects(shown.part("minimizeControl").geometry()));
            for (const auto *part : content->findChildren<QWidget *>()) {
                QVERIFY2(testing::isWhole(*part), qPrintable(part->objectName()));
                const int longNumber
                    = part->fontMetrics().horizontalAdvance(QStringLiteral("-10000")) + 20;
                QVERIFY(!qobject_cast<const QLineEdit *>(part) || part->width() >= longNumber);
            }
            for (const char *name : buttonNames) {
                QCOMPARE(shown.part(name).width(), content->width() - 40);
            }
        }
    }

    void tab_reachesEverythingButTheFields()
    {
        for (const auto &[isSharing, order] :
             {std::pair(false,
                        "startButton setAreaButton resetAreaButton website identity "
                        "minimizeControl closeControl startButton"),
              {true, "stopButton website identity minimizeControl closeControl stopButton"}}) {
            ShownWindow shown;
            if (isSharing) {
                shown.click("startButton");
                QTRY_VERIFY(shown.part("stopButton").isEnabled());
            }
            const QStringList expected = QString::fromLatin1(order).split(u' ');
            QStringList reached;
            while (reached.size() < expected.size()) {
                QWidget &left = *shown.window.focusWidget();
                const QImage focused = left.grab().toImage();
                QTest::keyClick(shown.window.windowHandle(), Qt::Key_Tab);
                QVERIFY2(left.grab().toImage() != focused, "The focus does not show");
                reached.append(shown.window.focusWidget()->objectName());
                if (const auto *line = qobject_cast<QLabel *>(shown.window.focusWidget())) {
                    QTest::keyClick(shown.window.windowHandle(), Qt::Key_C, Qt::ControlModifier);
                    QCOMPARE(QGuiApplication::clipboard()->text(), line->text());
                }
            }
            QCOMPARE(reached, expected);
        }
    }

    void keys_leadIntoTheFieldsAndOutAgain()
    {
        for (const auto &[typed, end] : {std::pair("Alt+X", "xField"),
                                         {"Alt+Y, Tab", "widthField"},
                                         {"Alt+W, Shift+Tab", "yField"},
                                         {"Alt+W, Tab", "heightField"},
                                         {"Alt+H, Tab", "startButton"},
                                         {"Alt+X, Shift+Tab", "resetAreaButton"},
                                         {"Alt+H, Esc", ""},
                                         {"Alt+W, Return, Tab", "startButton"},
                                         {"Alt+P", ""}}) { // nothing is shared
            const ShownWindow shown;
            const QKeySequence keys{QLatin1String(typed)};
            for (int i = 0; i < keys.count(); ++i) {
                QTest::keyClick(shown.window.windowHandle(), keys[i].key(),
                                keys[i].keyboardModifiers());
            }
            QCOMPARE(shown.window.focusWidget()->objectName(), QLatin1String(end));
            if (const auto *field = qobject_cast<QLineEdit *>(shown.window.focusWidget())) {
                QCOMPARE(field->selectedText(), field->text());
            }
        }
    }

    void mnemonics_differ_andShowWhileAltIsHeld()
    {
        for (const auto &[language, start] :
             {std::pair(QLocale::English, QStringLiteral("&Start sharing")),
              {QLocale::German, QStringLiteral("Freigabe &starten")},
              {QLocale::French, QStringLiteral("&Démarrer le partage")}}) {
            installTranslations(QLocale(language));
            const auto backToEnglish
                = qScopeGuard([] { qDeleteAll(qApp->findChildren<QTranslator *>()); });
            const ShownWindow shown;
            QCOMPARE(shown.part<QPushButton>("startButton").text(), start);
            std::set<QKeySequence> mnemonics;
            for (const auto *label : shown.window.findChildren<QLabel *>()) {
                mnemonics.insert(QKeySequence::mnemonic(label->text()));
            }
            for (const char *name : buttonNames) {
                const auto &button = shown.part<QPushButton>(name);
                mnemonics.insert(QKeySequence::mnemonic(button.text()));
                const auto picture = [&] { return shown.part(name).grab().toImage(); };
                const QImage before = picture();
                QTest::keyPress(shown.window.windowHandle(), Qt::Key_Alt);
                QVERIFY(picture() != before);
                QTest::keyRelease(shown.window.windowHandle(), Qt::Key_Alt);
                QCOMPARE(picture(), before);
            }
            mnemonics.erase(QKeySequence());
            QCOMPARE(mnemonics.size(), buttonNames.size() + std::size(fieldNames));
        }
    }

    void focus_staysOnWhatCanBePressed()
    {
        ShownWindow shown;
        const auto focused = [&] { return shown.window.focusWidget()->objectName(); };
        const auto type = [&](Qt::Key key) { QTest::keyClick(shown.window.windowHandle(), key); };
        type(Qt::Key_Tab);
        type(Qt::Key_Space);
        QTRY_COMPARE(focused(), QStringLiteral("stopButton"));
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, QStringLiteral("\r"), true);
        QApplication::sendEvent(&shown.part("stopButton"), &held);
        QVERIFY(!shown.journal.contains(QStringLiteral("close")));
        type(Qt::Key_Return);
        QTRY_COMPARE(focused(), QStringLiteral("startButton"));

        type(Qt::Key_Tab);
        type(Qt::Key_Space);
        QTRY_COMPARE(focused(), QString()); // nothing can be pressed while an area is chosen
        shown.coordinator->onCancel();
        QTRY_COMPARE(focused(), QStringLiteral("setAreaButton"));
        type(Qt::Key_Space);
        QTRY_COMPARE(focused(), QString());
        shown.click("xField");
        shown.coordinator->onCancel();
        QTRY_VERIFY(shown.part("setAreaButton").isEnabled());
        QCOMPARE(focused(), QStringLiteral("xField"));
    }

    void drag_movesTheWindow_whenItStartsOnNoControl()
    {
        const QPoint way(60, 40);
        // The line's text can be selected, and a disabled button is none the less a control.
        for (const auto &[name, moves] : {std::pair("title", true),
                                          {"emptyArea", true},
                                          {"identity", false},
                                          {"setAreaButton", false},
                                          {"stopButton", false},
                                          {"xField", false}}) {
            ShownWindow shown; // no window manager runs here, so the window moves itself
            QTRY_COMPARE(shown.window.pos(), QPoint(100, 100));
            QWindow *window = shown.window.windowHandle();
            const QPoint grab = shown.centreOf(name);
            QTest::mousePress(window, Qt::LeftButton, {}, grab);
            QTest::mouseMove(window, grab + way);
            QTest::mouseRelease(window, Qt::LeftButton, {}, grab);
            QTRY_COMPARE(shown.window.pos(), QPoint(100, 100) + (moves ? way : QPoint()));
        }
    }
};

int main(int argc, char **argv)
{
    return testing::runOnPrivateDisplay<MainWindowTest>(argc, argv);
}

#include "MainWindowTest.moc"
