// SPDX-License-Identifier: MIT
#include "tests/desktop/CaptureFixture.h"

#include "rig/CursorPicture.h"
#include "rig/PictureComparison.h"

#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTest>

namespace glimmerpane::testing
{

CaptureFixture::CaptureFixture(const XvfbServer::Options &options)
    : server(required(XvfbServer::start(options)))
    , client(required(XClient::connect(server.displayName())))
    , input(client)
{
    qputenv("DISPLAY", server.displayName().toLocal8Bit());
    backend = x11::makeBackend(false);
    coordinator = std::make_unique<AppCoordinator>(backend);
    service = std::make_unique<ScreenCaptureService>(backend);
    service->setOnCaptureEnded([this](const Error &) { ++captureEnds; });
}

CaptureFixture::~CaptureFixture()
{
    stop();
}

void CaptureFixture::share(QRect area)
{
    area_ = area;
    const CaptureFrame frame = frameOf(area, client.rootSize().height());
    const auto window = coordinator->showSharingWindow(frame);
    const auto found = findWindow(client, QStringLiteral("Glimmerpane - Output"));
    QVERIFY(found);
    outputWindow_ = *found;
    captured_.emplace(required(CapturedWindow::open(client, outputWindow_)));
    const auto result = QCoro::waitFor(service->startCapture(frame, window));
    QVERIFY2(result, qPrintable(result ? QString() : result.error().text));
}

void CaptureFixture::stop()
{
    service->stopCapture();
    captured_.reset();
    coordinator->closeSharingWindow();
}

QImage CaptureFixture::expected() const
{
    // The root has nothing beyond its edges; the output is black there.
    const QRect onRoot = area_ & QRect(QPoint(), client.rootSize());
    QImage picture(area_.size(), QImage::Format_RGB32);
    picture.fill(Qt::black);
    if (!onRoot.isEmpty()) {
        const QImage pixels = required(client.screenshot(onRoot));
        QPainter(&picture).drawImage(onRoot.topLeft() - area_.topLeft(), pixels);
    }
    // There is no pointer if the window manager that gave the root one has quit.
    const auto cursor = currentCursor(client);
    return cursor ? withCursor(picture, area_.topLeft(), *cursor) : picture;
}

QImage CaptureFixture::actual()
{
    return captured_ ? captured_->picture().value_or(QImage()) : QImage();
}

bool CaptureFixture::showsArea()
{
    return becomeEqual([this] { return actual(); }, [this] { return expected(); }, patience);
}

void CaptureFixture::setTextCursor(xcb_window_t window) const
{
    constexpr std::uint16_t textShape = 152; // XC_xterm of the font "cursor"
    auto *const connection = client.connection();
    const auto font = client.newId();
    xcb_open_font(connection, font, 6, "cursor");
    const std::uint32_t cursor = client.newId();
    xcb_create_glyph_cursor(connection, cursor, font, font, textShape, textShape + 1, 0, 0, 0,
                            0xffff, 0xffff, 0xffff);
    xcb_change_window_attributes(connection, window, XCB_CW_CURSOR, &cursor);
    client.sync();
}

int captureThreads()
{
    int count = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks.filePath(task) + QStringLiteral("/comm"));
        count += name.open(QIODevice::ReadOnly) && name.readAll().trimmed() == "captureQueue";
    }
    return count;
}

CaptureFrame frameOf(QRect rootRectangle, int rootHeight)
{
    return {.x = double(rootRectangle.x()),
            .y = double(rootHeight - rootRectangle.y() - rootRectangle.height()),
            .width = double(rootRectangle.width()),
            .height = double(rootRectangle.height())};
}

} // namespace glimmerpane::testing
