// SPDX-License-Identifier: MIT
#include "ui/ContentView.h"

#include "model/MainViewModel.h"
#include "ui/ActionButton.h"
#include "ui/EmptyArea.h"
#include "ui/SelectableLine.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace glimmerpane
{

namespace
{

constexpr int contentWidth = 320;
constexpr int smallestHeight = 440;
constexpr int sideMargin = 20;
constexpr int roomBesideTitle = 128; // for the window controls, on both sides

/** Grows with fonts larger than a desktop's usual one. */
int widthFor(const QFont &font)
{
    constexpr double largestNormal = 15; // pixels, that is 11 points
    const double growth = QFontInfo(font).pixelSize() / largestNormal;
    return static_cast<int>(std::lround(contentWidth * std::max(1.0, growth)));
}

QFont scaled(QFont font, double factor)
{
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
    } else {
        font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * factor)));
    }
    return font;
}

/** The font, shrunk until the text fits the width. */
QFont fitted(const QFont &font, const QString &text, int width)
{
    const int needed = QFontMetrics(font).horizontalAdvance(text);
    return needed > width ? scaled(font, static_cast<double>(width) / needed) : font;
}

/** Compares by value. NaN counts as equal to itself, or following the frame would never end. */
bool isSame(const CaptureFrame &one, const CaptureFrame &other)
{
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    return same(one.x, other.x) && same(one.y, other.y) && same(one.width, other.width)
        && same(one.height, other.height);
}

} // namespace

ContentView::ContentView(MainViewModel &viewModel)
    : viewModel_(viewModel)
{
    createWidgets();
    layOut();
    connectCommands();
    applyFonts();
    applyColors();
    refreshButtons();
    connect(&viewModel_, &MainViewModel::objectWillChange, this, &ContentView::scheduleRefresh);
}

void ContentView::createWidgets()
{
    using Emphasis = ActionButton::Emphasis;
    title_ = new QLabel(tr("Glimmerpane share"));
    title_->setObjectName(QStringLiteral("title"));
    identity_ = new SelectableLine;
    identity_->setObjectName(QStringLiteral("identity"));
    divider_ = new QSpacerItem(0, 1);
    startButton_ = new ActionButton(tr("&Start sharing"), Emphasis::Accent);
    startButton_->setObjectName(QStringLiteral("startButton"));
    setAreaButton_ = new ActionButton(tr("Set &area"), Emphasis::Plain);
    setAreaButton_->setObjectName(QStringLiteral("setAreaButton"));
    resetAreaButton_ = new ActionButton(tr("&Reset area"), Emphasis::Plain);
    resetAreaButton_->setObjectName(QStringLiteral("resetAreaButton"));
    stopButton_ = new ActionButton(tr("Sto&p sharing"), Emphasis::Danger);
    stopButton_->setObjectName(QStringLiteral("stopButton"));
    editor_ = new AreaEditor;
    emptyArea_ = new EmptyArea;
    emptyArea_->setObjectName(QStringLiteral("emptyArea"));
    website_ = new SelectableLine;
    website_->setObjectName(QStringLiteral("website"));
    website_->setText(QStringLiteral("https://glimmerpane.example"));
    refreshIdentity();
}

void ContentView::layOut()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addSpacing(12);
    column->addWidget(title_, 0, Qt::AlignHCenter);
    column->addSpacing(5 - SelectableLine::ringRoom);
    column->addWidget(identity_, 0, Qt::AlignHCenter);
    column->addSpacing(10 - SelectableLine::ringRoom);
    column->addItem(divider_);
    column->addSpacing(20);
    column->addLayout(makeCommandBlock());
    column->addSpacing(20);
    auto *editorRow = new QHBoxLayout;
    editorRow->setContentsMargins(sideMargin, 0, sideMargin, 0);
    editorRow->addWidget(editor_);
    column->addLayout(editorRow);
    column->addWidget(emptyArea_, 1); // includes the 20 points above the next line
    column->addWidget(website_, 0, Qt::AlignHCenter);
    column->addSpacing(20 - SelectableLine::ringRoom);
}

QVBoxLayout *ContentView::makeCommandBlock() const
{
    auto *block = new QVBoxLayout;
    block->setContentsMargins(sideMargin, 0, sideMargin, 0);
    block->setSpacing(10);
    for (ActionButton *button : {startButton_, setAreaButton_, resetAreaButton_, stopButton_}) {
        block->addWidget(button);
    }
    return block;
}

void ContentView::connectCommands()
{
    // Commit what was typed first: a mnemonic leaves the focus in the field.
    for (ActionButton *button : {startButton_, setAreaButton_, resetAreaButton_, stopButton_}) {
        connect(button, &ActionButton::clicked, &viewModel_, &MainViewModel::areaWritten);
    }
    connect(editor_, &AreaEditor::fieldFinished, &viewModel_, &MainViewModel::areaWritten);
    connect(startButton_, &ActionButton::clicked, this, [this] {
        if (!viewModel_.isSharingWindowOpen()) {
            viewModel_.startSharing(); // runs on as a coroutine
        }
    });
    connect(setAreaButton_, &ActionButton::clicked, &viewModel_, &MainViewModel::openFrameSelector);
    connect(resetAreaButton_, &ActionButton::clicked, &viewModel_,
            &MainViewModel::resetFrameSelector);
    connect(stopButton_, &ActionButton::clicked, &viewModel_, &MainViewModel::stopSharing);
    connect(editor_, &AreaEditor::textEdited, this, &ContentView::commitEdit);
    constexpr int longestWait = 1000; // milliseconds, in case the disk does not respond
    leaving_.setSingleShot(true);
    leaving_.setInterval(longestWait);
    connect(&leaving_, &QTimer::timeout, this, [this] { setFocus(); });
    connect(editor_, &AreaEditor::textEdited, &leaving_, &QTimer::stop); // editing continues
    connect(qApp, &QApplication::focusChanged, &leaving_, &QTimer::stop);
    connect(editor_, &AreaEditor::editingEnded, this, &ContentView::endTextEditing);
    connect(emptyArea_, &EmptyArea::clicked, this, &ContentView::endTextEditing);
}

QSize ContentView::sizeHint() const
{
    return {std::max(widthFor(font()), layout()->minimumSize().width()),
            std::max(smallestHeight, layout()->sizeHint().height())};
}

void ContentView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!shownFrame_) {
        shownFrame_ = viewModel_.currentFrame();
        editor_->showFrame(*shownFrame_);
        scheduleRefresh();
        // The first Tab goes to a command. Not set earlier: Qt cannot put a widget at the very end
        // of a chain.
        setTabOrder(website_, identity_);
    }
}

void ContentView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        applyFonts();
    } else if (event->type() == QEvent::PaletteChange) {
        applyColors();
    }
}

void ContentView::applyFonts()
{
    constexpr double titleScale = 1.3;
    constexpr double captionScale = 0.88;
    QFont titleFont = scaled(font(), titleScale);
    titleFont.setWeight(QFont::DemiBold);
    const QFont captionFont = scaled(font(), captionScale);
    const int width = widthFor(font());
    title_->setFont(fitted(titleFont, title_->text(), width - roomBesideTitle));
    identity_->setFont(fitted(captionFont, identity_->text(), width - sideMargin));
    website_->setFont(captionFont);
    editor_->setCaptionFont(captionFont);
}

void ContentView::applyColors()
{
    const Theme theme = themeFor(palette());
    identity_->setColors(theme);
    website_->setColors(theme);
    editor_->setColors(theme);
}

/** Draws the divider up to the window's border, which may be a fraction of a point wide. */
void ContentView::paintEvent(QPaintEvent * /*event*/)
{
    const double scale = devicePixelRatioF();
    const double border = borderWidth(scale) / scale;
    QPainter(this).fillRect(QRectF(divider_->geometry()).adjusted(border, 0, -border, 0),
                            themeFor(palette()).divider);
}

/**
 * The view model signals before it stores, so its properties are read in the next turn of the event
 * loop.
 */
void ContentView::scheduleRefresh()
{
    if (!std::exchange(isRefreshScheduled_, true)) {
        QMetaObject::invokeMethod(this, &ContentView::refresh, Qt::QueuedConnection);
    }
}

void ContentView::refresh()
{
    isRefreshScheduled_ = false;
    refreshButtons();
    refreshIdentity();
    followFrame();
}

void ContentView::refreshButtons()
{
    const bool sharing = viewModel_.isSharingWindowOpen();
    const bool idle = !sharing && !viewModel_.isFrameSelectorOpen();
    const std::array<std::pair<ActionButton *, bool>, 4> states{{{startButton_, idle},
                                                                 {setAreaButton_, idle},
                                                                 {resetAreaButton_, idle},
                                                                 {stopButton_, sharing}}};
    for (const auto &[button, enabled] : states) {
        if (!enabled && window()->focusWidget() == button) {
            leftButton_ = button;
            setFocus(); // otherwise it would move to another button, easily pressed by mistake
        }
    }
    for (const auto &[button, enabled] : states) {
        button->setEnabled(enabled);
    }
    restoreFocus();
}

/** Keeps the keyboard focus: on the button that had it, or on one that is enabled now. */
void ContentView::restoreFocus()
{
    if (!leftButton_ || window()->focusWidget() != this) {
        leftButton_ = nullptr; // the user has moved on
        return;
    }
    ActionButton *const button = leftButton_->isEnabled() ? leftButton_ : firstUsableButton();
    if (button) {
        button->setFocus();
        leftButton_ = nullptr;
    }
}

ActionButton *ContentView::firstUsableButton() const
{
    for (ActionButton *button : {startButton_, setAreaButton_, resetAreaButton_, stopButton_}) {
        if (button->isEnabled()) {
            return button;
        }
    }
    return nullptr;
}

/** Tab goes from the last field on to the buttons. */
bool ContentView::focusNextPrevChild(bool next)
{
    ActionButton *const button = firstUsableButton();
    if (next && button && editor_->isAncestorOf(window()->focusWidget())) {
        button->setFocus(Qt::TabFocusReason);
        return true;
    }
    return QWidget::focusNextPrevChild(next);
}

void ContentView::refreshIdentity()
{
    const Identity &identity = viewModel_.identity();
    const QString text
        = tr("Version: %1 | Device: %2").arg(identity.appVersion, identity.displayDeviceSerial());
    if (identity_->text() != text) { // setting the same text would clear the selection
        identity_->setText(text);
    }
}

/**
 * Writes a new area into the fields, all four before telling the view model: otherwise it would
 * save a mixture of the old and the new area. If rounding changed it, that is a new area again;
 * this ends because a rounded number yields the same text the second time.
 */
void ContentView::followFrame()
{
    if (!shownFrame_) {
        return;
    }
    if (!isSame(viewModel_.currentFrame(), *shownFrame_)) {
        shownFrame_ = viewModel_.currentFrame();
        editor_->showFrame(*shownFrame_);
    }
    commitTexts();
}

void ContentView::commitEdit(std::size_t field)
{
    // Do not mix a new area that the fields do not show yet with the one that they show.
    if (shownFrame_ && !isSame(viewModel_.currentFrame(), *shownFrame_)) {
        editor_->showFrame(viewModel_.currentFrame(), field);
    }
    commitTexts();
}

void ContentView::commitTexts()
{
    const AreaEditor::Texts texts = editor_->texts();
    if (texts != committedTexts_) {
        committedTexts_ = texts;
        viewModel_.updateFrame(texts[0], texts[1], texts[2], texts[3]);
    }
}

/** The focus marks the field being edited; it is dropped once the input is on disk. */
void ContentView::endTextEditing()
{
    if (QWidget *keyWindow = QApplication::activeWindow(); keyWindow && keyWindow->focusWidget()) {
        leftButton_ = nullptr;
        leaving_.start();
        if (auto written = viewModel_.areaWritten(); written.isFinished()) {
            leaveField();
        } else {
            written.then(this, [this] { leaveField(); });
        }
    }
}

void ContentView::leaveField()
{
    if (leaving_.isActive()) {
        leaving_.stop();
        setFocus(); // away from the fields; without any focus, activation would pick a button
    }
}

} // namespace glimmerpane
