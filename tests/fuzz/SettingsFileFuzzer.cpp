// SPDX-License-Identifier: MIT
#include "storage/FrameRepository.h"
#include "tests/fuzz/Require.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdint>

using namespace glimmerpane;
using testing::require;

namespace
{

SettingsFile settingsAt(const QString &path)
{
    return {.path = path, .key = QStringLiteral("captureFrame")};
}

/** A new name each time, because QSettings keeps what it knows of a path. */
QString newPath()
{
    static const QTemporaryDir folder;
    static quint64 count = 0;
    return folder.filePath(QString::number(++count) + QStringLiteral(".ini"));
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
            "the settings file can be made");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr CaptureFrame other{-1920.5, 0.1, 800, 600};
    const QString path = newPath();
    write(path, QByteArrayView(data, qsizetype(size)).toByteArray());
    {
        FrameRepository repository(settingsAt(path));
        repository.load();
        repository.save(other, FrameRepository::Pace::BeforeReturn);
    }
    const QString moved = newPath();
    require(QFile::rename(path, moved), "the settings file is there");
    require(FrameRepository(settingsAt(moved)).load()
                == (QFileInfo(moved).size() > SettingsFile::largest ? std::nullopt
                                                                    : std::optional(other)),
            "whatever the file holds, saving mends it, unless it is too large");
    QFile::remove(moved);
    return 0;
}
