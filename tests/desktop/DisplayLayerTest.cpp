// SPDX-License-Identifier: MIT
#include "tests/desktop/CaptureFixture.h"

#include "rig/WaitFor.h"

#include <QTest>

using namespace glimmerpane;
using namespace glimmerpane::testing;

namespace
{

constexpr QRect source(100, 100, 200, 100);

/** A window of the program, and a layer in it, without a stream. */
struct LayerFixture : CaptureFixture {
    explicit LayerFixture(QSize windowSize)
        : window(backend.outputWindows->make(QStringLiteral("layer"), windowSize).value())
        , layer(window->makeDisplayLayer().value())
    {
        window->orderFront();
    }

    SampleBuffer wholeFrame() const
    {
        return {.picture = ServerDrawable{client.root()},
                .source = source,
                .changed = source,
                .pointer = std::nullopt,
                .time = {}};
    }

    QImage picture()
    {
        return windowPicture(client, *findWindow(client, QStringLiteral("layer")))
            .value_or(QImage());
    }

    std::unique_ptr<OutputWindow> window;
    std::unique_ptr<DisplayLayer> layer;
};

} // namespace

class DisplayLayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picture_isFittedWithBlackBars_whenTheWindowHasAnotherShape()
    {
        for (const auto &[size, fitted] : {std::pair(QSize(400, 400), QRect(0, 100, 400, 200)),
                                           {QSize(300, 50), QRect(100, 0, 100, 50)},
                                           {QSize(600, 300), QRect(0, 0, 600, 300)}}) {
            LayerFixture fixture(size);
            const auto leftHalf = required(ColorWindow::show(
                fixture.client, {.rectangle = {100, 100, 100, 100}, .color = red}));
            const auto rightHalf = required(ColorWindow::show(
                fixture.client, {.rectangle = {200, 100, 100, 100}, .color = green}));
            fixture.layer->enqueueSampleBuffer(fixture.wholeFrame());
            const QRect inner = fitted.adjusted(2, 2, -2, -2);
            const auto isRight = [&, &size = size, &fitted = fitted] {
                const QImage picture = fixture.picture();
                return picture.size() == size && picture.pixel(inner.topLeft()) == red
                    && picture.pixel(inner.bottomRight()) == green
                    && picture.pixel(fitted.center() - QPoint(3, 0)) == red
                    && picture.pixel(fitted.center() + QPoint(4, 0)) == green
                    && (fitted.size() == size
                        || (picture.pixel(0, 0) == 0xff000000
                            && picture.pixel(size.width() - 1, size.height() - 1) == 0xff000000));
            };
            QVERIFY(waitFor(isRight, patience));
        }
    }

    void picture_hasAScaledPointer_whenItIsScaled()
    {
        LayerFixture fixture({400, 200});
        const auto window
            = required(ColorWindow::show(fixture.client, {.rectangle = source, .color = red}));
        QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
        image.fill(blue);
        SampleBuffer sample = fixture.wholeFrame();
        sample.pointer = PointerSprite{.serial = 1, .topLeft = {150, 150}, .image = image};
        fixture.layer->enqueueSampleBuffer(sample);
        const auto isRight = [&] {
            const QImage picture = fixture.picture();
            return picture.pixel(102, 102) == blue && picture.pixel(117, 117) == blue
                && picture.pixel(97, 97) == red && picture.pixel(122, 122) == red;
        };
        QVERIFY(waitFor(isRight, patience));
    }

    void highlight_liesOnThePicture_asLongAsItIsSet()
    {
        // As large as the source; doubled, with bars. The place is that of the highlight's middle.
        for (const auto &[size, place] :
             {std::pair(source.size(), QPoint(55, 55)), {QSize(400, 400), QPoint(110, 210)}}) {
            LayerFixture fixture(size);
            const auto window
                = required(ColorWindow::show(fixture.client, {.rectangle = source, .color = red}));
            QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
            image.fill(blue);
            QVERIFY(fixture.layer->setHighlights({{.image = image, .topLeft = {150, 150}}}));
            fixture.layer->enqueueSampleBuffer(fixture.wholeFrame());
            const auto becomes = [&, &place = place](QRgb color) {
                return waitFor([&] { return fixture.picture().pixel(place) == color; }, patience);
            };
            QVERIFY(becomes(blue));
            for (const double opacity : {0.5, 0.0}) {
                QVERIFY(waitFor(
                    [&] {
                        return fixture.layer->setHighlights(
                            {{.image = image, .topLeft = {150, 150}, .opacity = opacity}});
                    },
                    patience));
                QVERIFY(becomes(opacity > 0 ? 0xff80007f : red));
            }
        }
    }

    void layer_isNotReady_untilTheServerHasDoneTheFrame()
    {
        LayerFixture fixture(source.size());
        QVERIFY(fixture.layer->isReadyForMoreMediaData());
        // While another client grabs the server, nobody else's requests are handled.
        xcb_grab_server(fixture.client.connection());
        fixture.client.sync();
        fixture.layer->enqueueSampleBuffer(fixture.wholeFrame());
        QVERIFY(!fixture.layer->isReadyForMoreMediaData());
        xcb_ungrab_server(fixture.client.connection());
        fixture.client.flush();
        QVERIFY(waitFor([&] { return fixture.layer->isReadyForMoreMediaData(); }, patience));
    }
};

QTEST_MAIN(DisplayLayerTest)
#include "DisplayLayerTest.moc"
