// SPDX-License-Identifier: MIT
#include "platform/x11/DisplayLayerX11.h"
#include "platform/x11/X11Backend.h"
#include "rig/CapturedWindow.h"
#include "rig/PictureComparison.h"
#include "rig/WaitFor.h"
#include "rig/XvfbServer.h"

#include <QPainter>
#include <QTest>

#include <fcntl.h>
#include <sys/mman.h>

using namespace glimmerpane;
using namespace glimmerpane::testing;
using x11::Lending;

namespace
{

constexpr auto patience = std::chrono::seconds(5);
constexpr QSize size(120, 80);
constexpr QRect whole(QPoint(), size);

/** How a recorder lays out a picture in a file. */
struct Layout {
    int padding = 0; ///< pixels after each row
    int start = 0; ///< bytes before the first
    bool isWritable = true;
    qint64 claimed = 0; ///< bytes that the file is said to have more than it has
};

/** A recorder's buffer. */
class Buffer
{
public:
    explicit Buffer(const Layout &layout = {})
        : layout_(layout)
        , file_(memfd_create("buffer", MFD_CLOEXEC | MFD_ALLOW_SEALING))
        , bytes_(layout.start + qsizetype(size.width() + layout.padding) * 4 * size.height())
    {
        require(ftruncate(file_.get(), bytes_) == 0, "no memory");
        memory_ = static_cast<uchar *>(
            mmap(nullptr, size_t(bytes_), PROT_READ | PROT_WRITE, MAP_SHARED, file_.get(), 0));
        require(memory_ != MAP_FAILED, "no mapping");
        const QByteArray path = "/proc/self/fd/" + QByteArray::number(file_.get());
        shared_ = std::make_shared<const MemoryFile>(
            FileDescriptor(open(path, layout.isWritable ? O_RDWR : O_RDONLY)),
            size_t(bytes_ + layout.claimed), layout.isWritable);
    }
    Q_DISABLE_COPY_MOVE(Buffer)
    ~Buffer() { munmap(memory_, size_t(bytes_)); }

    /** Its pixels, to be drawn. */
    QImage image() const
    {
        return {memory_ + layout_.start, size.width(), size.height(), stride(),
                QImage::Format_RGB32};
    }
    void fill(QRect rectangle, QRgb color) const
    {
        QImage pixels = image();
        QPainter(&pixels).fillRect(rectangle, QColor::fromRgb(color));
    }
    MappedPixels pixels() const
    {
        return {.data = reinterpret_cast<const std::byte *>(memory_) + layout_.start,
                .stride = stride(),
                .size = size,
                .owner = owner_,
                .file = shared_,
                .offset = size_t(layout_.start)};
    }
    bool isLent() const { return owner_.use_count() > 1; }

private:
    qsizetype stride() const { return (size.width() + layout_.padding) * 4; }

    Layout layout_;
    FileDescriptor file_;
    qsizetype bytes_;
    uchar *memory_ = nullptr;
    std::shared_ptr<const MemoryFile> shared_;
    std::shared_ptr<int> owner_ = std::make_shared<int>();
};

struct LayerFixture {
    explicit LayerFixture(Lending most, QSize windowSize = size)
        : server(required(XvfbServer::start()))
        , client(required(XClient::connect(server.displayName())))
    {
        qputenv("DISPLAY", server.displayName().toLocal8Bit());
        desktop = x11::makeBackend(false);
        window
            = desktop.outputWindows->make(QStringLiteral("layer"), {QPoint(), windowSize}).value();
        window->orderFront();
        const auto isThere = [this] { return findWindow(client, QStringLiteral("layer")); };
        require(waitFor([&] { return isThere().has_value(); }, patience), "no window");
        const auto count = [this](bool isPictureNew) {
            ++drawn;
            newPictures += isPictureNew;
        };
        layer = x11::DisplayLayerX11::create(*isThere(), windowSize, most, count).value();
    }

    void show(FramePicture picture, const QRegion &changed, QRect source = whole)
    {
        QVERIFY(waitFor([&] { return layer->isReadyForMoreMediaData(); }, patience));
        layer->enqueueSampleBuffer({.picture = std::move(picture),
                                    .source = source,
                                    .changed = changed,
                                    .pointer = pointer,
                                    .time = {}});
    }

    /** All of it but a margin. */
    bool comesToShow(const QImage &expected, int margin = 0) const
    {
        const QRect seen = expected.rect().marginsRemoved({margin, margin, margin, margin});
        return becomeEqual(
            [&] {
                return windowPicture(client, *findWindow(client, QStringLiteral("layer")))
                    .value_or(QImage())
                    .copy(seen);
            },
            [&] { return expected.copy(seen); }, patience);
    }

    XvfbServer server;
    XClient client;
    Backend desktop;
    std::unique_ptr<OutputWindow> window;
    std::unique_ptr<DisplayLayer> layer;
    std::optional<PointerSprite> pointer;
    int drawn = 0; ///< how often the layer has told of it
    int newPictures = 0; ///< among these
};

PointerSprite pointerAt(QPoint place)
{
    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    image.fill(0xff0000ff);
    return {.serial = 1, .topLeft = place, .image = image};
}

} // namespace

Q_DECLARE_METATYPE(x11::Lending)

class LentPictureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_isReadWhereItIs_whereThatWorks_data()
    {
        QTest::addColumn<Lending>("lending");
        QTest::addColumn<int>("padding");
        QTest::addColumn<int>("start");
        QTest::addColumn<bool>("isWritable");
        for (const int padding : {0, 24}) {
            for (const auto &[name, lending] : {std::pair("copied", Lending::Never),
                                                {"by request", Lending::ByRequest},
                                                {"as pixmaps", Lending::AsPixmaps}}) {
                QTest::addRow("%s, padding %d", name, padding) << lending << padding << 0 << true;
            }
        }
        QTest::newRow("with an offset") << Lending::AsPixmaps << 0 << 8192 + 4 << true;
        QTest::newRow("not writable") << Lending::AsPixmaps << 0 << 0 << false;
    }

    void picture_isReadWhereItIs_whereThatWorks()
    {
        QFETCH(Lending, lending);
        QFETCH(int, padding);
        QFETCH(int, start);
        QFETCH(bool, isWritable);
        const bool isLent = lending != Lending::Never;
        LayerFixture fixture(lending);
        const Layout layout{.padding = padding, .start = start, .isWritable = isWritable};
        const Buffer first(layout);
        const Buffer second(layout);
        first.fill(whole, 0xff808000);
        first.fill({100, 60, 20, 20}, 0xff00ff00);
        const QImage untouched = first.image().copy();
        const auto withPointer = [&](QImage picture) {
            QPainter(&picture).drawImage(fixture.pointer->topLeft, fixture.pointer->image);
            return picture;
        };
        fixture.pointer = pointerAt({40, 30});
        fixture.show(first.pixels(), whole);
        QImage expected = first.image().copy();
        QVERIFY(fixture.comesToShow(withPointer(expected)));
        QCOMPARE(first.isLent(), isLent);

        second.fill(whole, 0xff808000);
        second.fill(QRect(0, 60, 20, 20), 0xff123456); // not said to have changed
        const QRegion changed = QRegion(5, 5, 30, 3) | QRect(70, 20, 20, 40);
        for (const QRect &part : changed) {
            second.fill(part, 0xffff0000);
            QPainter(&expected).fillRect(part, QColor(Qt::red));
        }
        fixture.show(second.pixels(), changed);
        QVERIFY(fixture.comesToShow(withPointer(expected)));
        QVERIFY(!first.isLent());
        QCOMPARE(first.image().copy(), untouched);

        // What the pointer uncovers shows where the picture comes from.
        const QRect uncovered(fixture.pointer->topLeft, fixture.pointer->image.size());
        second.fill(uncovered, 0xffffffff);
        QPainter(&expected).fillRect(uncovered, isLent ? Qt::white : QColor(0x80, 0x80, 0));
        fixture.pointer = pointerAt({90, 5});
        fixture.show(SamePicture(), {});
        QVERIFY(fixture.comesToShow(withPointer(expected)));
        QCOMPARE(second.isLent(), isLent);
        QCOMPARE(std::pair(fixture.drawn, fixture.newPictures), std::pair(3, 2));
        fixture.layer.reset();
        QVERIFY(!second.isLent());
    }

    void picture_isScaled_whereverItIs()
    {
        for (const Lending lending : {Lending::Never, Lending::ByRequest, Lending::AsPixmaps}) {
            for (const int padding : {0, 24}) {
                LayerFixture fixture(lending, size * 2);
                const Buffer buffer({.padding = padding});
                QImage expected(size * 2, QImage::Format_RGB32);
                for (const QRgb color : {0xffff0000, 0xff00ff00}) {
                    buffer.fill(whole, color);
                    expected.fill(color);
                    fixture.show(buffer.pixels(), whole);
                    QVERIFY(fixture.comesToShow(expected, 1)); // its edge is smooth
                }
                // A part that fits is copied again, as it is.
                expected.fill(Qt::black);
                const QRect beside(-10, -10, size.width() * 2, size.height() * 2);
                QPainter(&expected).fillRect(whole.translated(10, 10), QColor(Qt::green));
                fixture.show(buffer.pixels(), whole, beside);
                QVERIFY(fixture.comesToShow(expected));
            }
        }
    }

    void picture_isCopied_whenTheServerRefusesTheMemory()
    {
        for (const Lending lending : {Lending::ByRequest, Lending::AsPixmaps}) {
            LayerFixture fixture(lending);
            // The server looks at the file's real size.
            const Buffer buffer({.start = 4096, .claimed = 4096});
            const auto pixels = [&](std::shared_ptr<const MemoryFile> file) {
                MappedPixels lies = buffer.pixels();
                lies.offset += 4096;
                lies.file = file ? file : lies.file;
                return lies;
            };
            buffer.fill(whole, 0xffff0000);
            fixture.show(pixels({}), whole);
            fixture.show(pixels({}), QRect(0, 0, 1, 1));
            QVERIFY(fixture.comesToShow(buffer.image()));
            QVERIFY(!buffer.isLent());

            LayerFixture other(lending);
            other.show(pixels(std::make_shared<const MemoryFile>(
                           FileDescriptor(open("/", O_RDONLY)), 1 << 20, true)),
                       whole);
            QVERIFY(other.comesToShow(buffer.image()));
        }
    }
};

QTEST_MAIN(LentPictureTest)
#include "LentPictureTest.moc"
