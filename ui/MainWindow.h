// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

namespace glimmerpane
{

class MainViewModel;
class Shell;
class WindowControl;

/**
 * The main window: exactly as large as its content, without a title bar, with its own window
 * controls at the top. Moved by dragging any part that is not a control.
 */
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    /** The view model must outlive the window. */
    MainWindow(MainViewModel &viewModel, std::shared_ptr<Shell> shell);

protected:
    void closeEvent(QCloseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void addShortcuts();
    void drag(const QPoint &pointer);
    QSize sizeInPixels() const;

    MainViewModel &viewModel_;
    const std::shared_ptr<Shell> shell_;
    WindowControl *minimizeControl_;
    WindowControl *closeControl_;
    std::optional<QPoint> press_; ///< screen coordinates, while a press may still become a drag
    std::optional<QPoint> grabOffset_; ///< the pointer in the window, while we move it ourselves
};

} // namespace glimmerpane
