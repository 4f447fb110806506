// SPDX-License-Identifier: MIT
#include "ui/MainWindow.h"
#include "tests/support/Fakes.h"
#include "tests/ui/PrivateDisplay.h"
#include "ui/ContentView.h"
#include "ui/FlatStyle.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLineEdit>
#include <QWindow>

using namespace glimmerpane;

namespace
{

struct ShownWindow : FakeApplication {
    ShownWindow()
        : FakeApplication(CaptureFrame{10, 20, 300, 200})
    {
        window.show();
        window.move(100, 100);
        window.activateWindow();
        isActive = QTest::qWaitForWindowActive(&window);
        QCoreApplication::processEvents();
    }

    QWidget &part(const QString &name) const { return *window.findChild<QWidget *>(name); }

    MainWindow window{*viewModel};
    bool isActive = false;
};

QStringList names(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *name : list) {
        result.append(QString::fromLatin1(name));
    }
    return result;
}

} // namespace

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new FlatStyle(QStringLiteral("fusion"))); }

    void window_isAsLargeAsItsContent_data()
    {
        QTest::addColumn<double>("fontScale");
        QTest::newRow("usual font") << 1.0;
        QTest::newRow("large font") << 1.8;
    }
    void window_isAsLargeAsItsContent()
    {
        QFETCH(double, fontScale);
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * fontScale);
        ShownWindow shown;
        shown.window.setFont(font);
        const auto *content = shown.window.findChild<ContentView *>();
        QTRY_COMPARE(shown.window.size(), content->sizeHint());
        QTRY_COMPARE(content->size(), shown.window.size());
        QCOMPARE(content->width(), 320);
        QVERIFY(content->height() >= 440);
        const int top = shown.part(QStringLiteral("closeControl")).geometry().left();
        QVERIFY(shown.part(QStringLiteral("title")).geometry().right() < top);
        for (const auto *part : content->findChildren<QWidget *>()) {
            QVERIFY2(content->rect().contains(QRect(part->mapTo(content, QPoint()), part->size())),
                     qPrintable(part->objectName()));
            QVERIFY2(part->height() >= part->minimumSizeHint().height(),
                     part->metaObject()->className());
        }
        for (const QString &name :
             names({"startButton", "setAreaButton", "resetAreaButton", "stopButton"})) {
            QCOMPARE(shown.part(name).width(), 280);
        }
    }

    void tab_reachesEveryEnabledButtonAndNoField_data()
    {
        QTest::addColumn<bool>("isSharing");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("idle") << false
                              << names({"startButton", "setAreaButton", "resetAreaButton",
                                        "minimizeControl", "closeControl", "startButton"});
        QTest::newRow("sharing") << true
                                 << names({"stopButton", "minimizeControl", "closeControl",
                                           "stopButton"});
    }
    void tab_reachesEveryEnabledButtonAndNoField()
    {
        QFETCH(bool, isSharing);
        QFETCH(QStringList, order);
        ShownWindow shown;
        QVERIFY(shown.isActive);
        if (isSharing) {
            shown.viewModel->startSharing();
            QTRY_VERIFY(shown.part(QStringLiteral("stopButton")).isEnabled());
        }
        QStringList reached;
        while (reached.size() < order.size()) {
            QTest::keyClick(shown.window.windowHandle(), Qt::Key_Tab);
            reached.append(shown.window.focusWidget()->objectName());
        }
        QCOMPARE(reached, order);
    }

    void focus_showsOnTheButton_whenReachedByTab()
    {
        ShownWindow shown;
        QVERIFY(shown.isActive);
        QWidget &button = shown.part(QStringLiteral("setAreaButton"));
        const QImage before = button.grab().toImage();
        QTest::keyClick(shown.window.windowHandle(), Qt::Key_Tab);
        QTest::keyClick(shown.window.windowHandle(), Qt::Key_Tab);
        QVERIFY(button.hasFocus());
        QVERIFY(button.grab().toImage() != before);
    }

    void everyControl_hasAnAccessibleName()
    {
        const ShownWindow shown;
        QWidgetList controls;
        for (auto *button : shown.window.findChildren<QAbstractButton *>()) {
            controls.append(button);
        }
        for (auto *field : shown.window.findChildren<QLineEdit *>()) {
            controls.append(field);
        }
        QCOMPARE(controls.size(), 10);
        for (QWidget *control : controls) {
            const auto *accessible = QAccessible::queryAccessibleInterface(control);
            QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(),
                     qPrintable(control->objectName()));
        }
    }

    void drag_movesTheWindow_whenItStartsOnNoControl_data()
    {
        QTest::addColumn<QString>("part");
        QTest::addColumn<bool>("moves");
        QTest::newRow("title") << QStringLiteral("title") << true;
        QTest::newRow("empty area") << QStringLiteral("emptyArea") << true;
        QTest::newRow("selectable label") << QStringLiteral("identity") << false;
        QTest::newRow("button") << QStringLiteral("setAreaButton") << false;
        QTest::newRow("disabled button") << QStringLiteral("stopButton") << false;
        QTest::newRow("field") << QStringLiteral("xField") << false;
    }
    void drag_movesTheWindow_whenItStartsOnNoControl()
    {
        QFETCH(QString, part);
        QFETCH(bool, moves);
        ShownWindow shown; // no window manager runs here, so the window moves itself
        QTRY_COMPARE(shown.window.pos(), QPoint(100, 100));
        QWindow *window = shown.window.windowHandle();
        QWidget &start = shown.part(part);
        const QPoint grab = start.mapTo(&shown.window, start.rect().center());
        const QPoint way(60, 40);
        QTest::mousePress(window, Qt::LeftButton, {}, grab);
        QTest::mouseMove(window, grab + way);
        QTest::mouseRelease(window, Qt::LeftButton, {}, grab);
        QTRY_COMPARE(shown.window.pos(), QPoint(100, 100) + (moves ? way : QPoint()));
    }

    void closeControl_closesTheWindow_whenClicked()
    {
        ShownWindow shown;
        QTest::mouseClick(&shown.part(QStringLiteral("closeControl")), Qt::LeftButton);
        QVERIFY(!shown.window.isVisible());
    }
};

int main(int argc, char **argv)
{
    return testing::runOnPrivateDisplay<MainWindowTest>(argc, argv);
}

#include "MainWindowTest.moc"
