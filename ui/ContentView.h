// SPDX-License-Identifier: MIT
#pragma once

#include "services/CaptureFrame.h"
#include "ui/AreaEditor.h"

#include <QTimer>
#include <QWidget>

#include <optional>

class QLabel;
class QSpacerItem;
class QVBoxLayout;

namespace glimmerpane
{

class ActionButton;
class EmptyArea;
class MainViewModel;
class SelectableLine;

/**
 * The entire content of the main window: shows the view model and forwards commands to it.
 * Refreshes at most once per turn of the event loop. Main thread.
 */
class ContentView : public QWidget
{
    Q_OBJECT

public:
    /** The view model must outlive the view. */
    explicit ContentView(MainViewModel &viewModel);

    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void createWidgets();
    void layOut();
    QVBoxLayout *makeCommandBlock() const;
    void connectCommands();
    void applyFonts();
    void applyColors();

    void scheduleRefresh();
    void refresh();
    void refreshButtons();
    void restoreFocus();
    ActionButton *firstUsableButton() const;
    void refreshIdentity();
    void followFrame();
    void commitEdit(std::size_t field);
    void commitTexts();
    void endTextEditing();
    void leaveField();

    MainViewModel &viewModel_;
    QLabel *title_;
    SelectableLine *identity_;
    QSpacerItem *divider_;
    ActionButton *startButton_;
    ActionButton *setAreaButton_;
    ActionButton *resetAreaButton_;
    ActionButton *stopButton_;
    AreaEditor *editor_;
    EmptyArea *emptyArea_;
    SelectableLine *website_;

    std::optional<CaptureFrame> shownFrame_; ///< null until the view is shown
    AreaEditor::Texts committedTexts_; ///< what the view model was last told
    QTimer leaving_; ///< runs from the end of editing until the focus is dropped
    ActionButton *leftButton_ = nullptr; ///< had the focus until it was disabled
    bool isRefreshScheduled_ = false;
};

} // namespace glimmerpane
