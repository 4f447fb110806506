// SPDX-License-Identifier: MIT
#include "ui/MainWindow.h"

#include "model/MainViewModel.h"
#include "platform/Shell.h"
#include "ui/ContentView.h"
#include "ui/Theme.h"
#include "ui/WindowControl.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

#include <cmath>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr double cornerRadius = 8;
constexpr int controlMargin = 10;
constexpr int controlSpacing = 4;

/** Built row by row, so that all four corners match to the pixel. */
QRegion roundedRegion(QSize size, double radius)
{
    const int rows = static_cast<int>(std::ceil(radius));
    QRegion region(0, rows, size.width(), size.height() - 2 * rows);
    for (int y = 0; y < rows; ++y) {
        const double rise = radius - y - 0.5;
        const double half = std::sqrt(radius * radius - rise * rise);
        const int inset = static_cast<int>(std::lround(radius - half));
        const QRect row(inset, y, size.width() - 2 * inset, 1);
        region += row;
        region += row.translated(0, size.height() - 1 - 2 * y);
    }
    return region;
}

/** Qt treats only a QMainWindow as a window and hides anything else from screen readers. */
QAccessibleInterface *accessibleWindow(const QString & /*className*/, QObject *object)
{
    auto *const window = qobject_cast<MainWindow *>(object);
    return window ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

MainWindow::MainWindow(MainViewModel &viewModel, std::shared_ptr<Shell> shell)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint)
    , viewModel_(viewModel)
    , shell_(std::move(shell))
{
    QAccessible::installFactory(accessibleWindow);
    setWindowTitle(QStringLiteral("Glimmerpane"));
    setObjectName(QStringLiteral("mainWindow"));
    auto *content = new ContentView(viewModel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(content);
    content->setFocus(); // no button has the focus until the user moves it to one

    using Kind = WindowControl::Kind;
    minimizeControl_ = new WindowControl(Kind::Minimize, tr("Minimize"), this);
    minimizeControl_->setObjectName(QStringLiteral("minimizeControl"));
    closeControl_ = new WindowControl(Kind::Close, tr("Close"), this);
    closeControl_->setObjectName(QStringLiteral("closeControl"));
    connect(minimizeControl_, &WindowControl::clicked, this, &QWidget::showMinimized);
    connect(closeControl_, &WindowControl::clicked, this, &QWidget::close);
    addShortcuts();
}

void MainWindow::addShortcuts()
{
    for (const auto key : {QKeySequence::Close, QKeySequence::Quit}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    }
}

/** Only the user gets here: signals and the end of the session quit without closing windows. */
void MainWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(viewModel_.mayClose());
}

void MainWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        press_ = event->globalPosition().toPoint();
        grabOffset_.reset();
    }
}

void MainWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton)) {
        drag(event->globalPosition().toPoint());
    }
}

void MainWindow::drag(const QPoint &pointer)
{
    if (grabOffset_) {
        move(pointer - *grabOffset_);
    } else if (press_
               && (pointer - *press_).manhattanLength() >= QApplication::startDragDistance()) {
        const QPoint grabbedAt = *press_ - pos();
        press_.reset();
        if (!windowHandle()->startSystemMove()) { // no window manager
            grabOffset_ = grabbedAt;
            move(pointer - grabbedAt);
        }
    }
}

void MainWindow::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        press_.reset();
        grabOffset_.reset();
    }
}

/** Rounded as Qt does. */
QSize MainWindow::sizeInPixels() const
{
    return size() * devicePixelRatioF();
}

void MainWindow::paintEvent(QPaintEvent * /*event*/)
{
    const Theme theme = themeFor(palette());
    const double scale = devicePixelRatioF();
    const QRectF pixels(QPointF(), sizeInPixels());
    const double border = borderWidth(scale);
    const double innerRadius = cornerRadius * scale - border;
    QPainter painter(this);
    painter.scale(1 / scale, 1 / scale);
    painter.fillRect(pixels, theme.windowBorder);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.window);
    painter.drawRoundedRect(pixels.adjusted(border, border, -border, -border), innerRadius,
                            innerRadius);
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // Rounded even without a compositor. A widget's own mask is in points, so its steps would be
    // visible.
    winId(); // creates the window
    shell_->setShape(*windowHandle(),
                     roundedRegion(sizeInPixels(), cornerRadius * devicePixelRatioF()));
    closeControl_->move(width() - controlMargin - closeControl_->width(), controlMargin);
    minimizeControl_->move(closeControl_->x() - controlSpacing - minimizeControl_->width(),
                           controlMargin);
}

} // namespace glimmerpane
