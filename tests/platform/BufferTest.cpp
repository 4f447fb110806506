// SPDX-License-Identifier: MIT
#include "platform/Frame.h"
#include "platform/pipewire/BufferMapping.h"
#include "platform/pipewire/ChangedRows.h"

#include <QTest>

#include <fcntl.h>
#include <spa/buffer/buffer.h>
#include <sys/mman.h>

using namespace glimmerpane;
using pipewire::BufferMapping;
using pipewire::changedRows;

class BufferTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void memory_isHandedOn_onlyIfItCannotShrink()
    {
        constexpr int page = 4096;
        struct Row {
            int seals;
            bool isHandedOn;
            bool isWritable;
        };
        for (const Row &row : {Row{0, false, false},
                               {F_SEAL_GROW, false, false},
                               {F_SEAL_SHRINK, true, true},
                               {F_SEAL_SHRINK | F_SEAL_WRITE, true, false}}) {
            const FileDescriptor file(memfd_create("buffer", MFD_CLOEXEC | MFD_ALLOW_SEALING));
            QCOMPARE(ftruncate(file.get(), 3 * page), 0);
            QCOMPARE(pwrite(file.get(), "x", 1, page + 7), 1);
            QCOMPARE(fcntl(file.get(), F_ADD_SEALS, row.seals), 0);
            spa_data data{};
            data.type = SPA_DATA_MemFd;
            data.fd = file.get();
            data.mapoffset = page + 7;
            data.maxsize = page;
            const auto mapping = BufferMapping::create(data);
            QVERIFY(mapping);
            QCOMPARE(mapping->bytes().front(), std::byte('x'));
            QCOMPARE(mapping->file() != nullptr, row.isHandedOn);
            if (row.isHandedOn) {
                QCOMPARE(mapping->file()->size, std::size_t(3 * page));
                QCOMPARE(mapping->file()->isWritable, row.isWritable);
                QCOMPARE(mapping->fileOffset(), std::size_t(page + 7));
            }
            data.maxsize = 2 * page;
            QVERIFY(!BufferMapping::create(data)); // it would end beyond the file
        }
    }

    void rows_areThoseThatDiffer()
    {
        const QRect within(2, 3, 6, 5);
        for (const auto &[changed, rows] : {std::pair(QList<QPoint>(), QRect()),
                                            {{{2, 3}}, QRect(2, 3, 6, 1)},
                                            {{{7, 7}}, QRect(2, 7, 6, 1)},
                                            {{{4, 4}, {2, 6}}, QRect(2, 4, 6, 3)},
                                            {{{1, 5}, {8, 5}, {4, 2}, {4, 8}}, QRect()}}) {
            QImage before(12, 10, QImage::Format_RGB32);
            before.fill(Qt::black);
            QImage now(20, 10, QImage::Format_RGB32); // rows of another length
            now.fill(Qt::black);
            for (const QPoint &pixel : changed) {
                now.setPixel(pixel, 0xff010000);
            }
            const auto pixels = [](const QImage &image) {
                return MappedPixels{.data = reinterpret_cast<const std::byte *>(image.constBits()),
                                    .stride = image.bytesPerLine(),
                                    .size = {12, 10},
                                    .owner = nullptr};
            };
            const QRect found = changedRows(pixels(before), pixels(now), within);
            QVERIFY(rows.isEmpty() ? found.isEmpty() : found == rows);
        }
    }
};

QTEST_APPLESS_MAIN(BufferTest)
#include "BufferTest.moc"
