// SPDX-License-Identifier: MIT
#include "storage/FrameRepository.h"

#include <QDir>
#include <QLockFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame first{-1920.5, 0.1, 800, 600};
constexpr CaptureFrame second{10, 20, 300, 200};
const QString key = QStringLiteral("captureFrame");

constexpr auto now = FrameRepository::Pace::BeforeReturn;
constexpr auto typed = FrameRepository::Pace::WhenTypingRests;

/** What a new process would load. QSettings caches by path, so this uses another path. */
std::optional<CaptureFrame> loadAfresh(const QString &path)
{
    const QTemporaryDir elsewhere;
    const QString copy = elsewhere.filePath(QStringLiteral("copy.ini"));
    return QFile::copy(path, copy) ? FrameRepository({copy, key}).load() : std::nullopt;
}

} // namespace

class FrameRepositoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standardDefaults_lieInTheConfigurationFolder()
    {
        const QTemporaryDir home;
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("new"))));
        FrameRepository repository(captureFrameFile());
        QCOMPARE(repository.load(), std::nullopt);
        for (const CaptureFrame &frame : {first, second}) {
            repository.save(frame, now);
            QCOMPARE(repository.load(), frame);
            QCOMPARE(loadAfresh(home.filePath(QStringLiteral("new/glimmerpane/glimmerpane.ini"))),
                     frame);
        }
    }

    void load_isNothing_whenTheFileIsBroken_andSaveMendsIt()
    {
        const QByteArray good = R"({\"x\":1,\"y\":2,\"width\":3,\"height\":4})";
        const QTemporaryDir folder;
        for (const QByteArray &broken : std::initializer_list<QByteArray>{
                 "", "captureF", "captureFrame=\"@ByteArray({\\\"x\\\":", "captureFrame\n",
                 "captureFrame=\"" + good + "\"\n", "captureFrame=\"@ByteArray(" + good + "\"\n",
                 "captureFrame=@ByteArray()\n", "captureFrame=1, 2, 3, 4\n",
                 "captureFrame=@Variant(\\0\\0\\0\\xc\\xff\\xff)\n",
                 "[Other]\ncaptureFrame=\"@ByteArray(" + good + ")\"\n", "[Gen",
                 QByteArray(4096, '\0'), "\x80\xff=\x01%\\x"}) {
            QFile file(folder.filePath(QString::number(qHash(broken))));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("[Window]\nwidth=7\n[General]\n" + broken);
            file.close();
            FrameRepository repository({file.fileName(), key});
            QVERIFY2(!repository.load(), broken.constData());
            repository.save(first, now);
            QCOMPARE(loadAfresh(file.fileName()), first);
            const QSettings settings(file.fileName(), QSettings::IniFormat);
            QCOMPARE(settings.value(QStringLiteral("Window/width")).toInt(), 7);
        }
    }

    void fileFarTooLarge_isLeftAlone()
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("settings.ini")));
        const QByteArray listOfOne("\0\0\0\x9\0\0\0\1", 8); // QSettings calls itself for each
        const QByteArray bytes = "captureFrame=@Variant(" + listOfOne.repeated(100'000) + ')';
        QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
        file.write(bytes);
        FrameRepository repository({file.fileName(), key});
        QVERIFY(!repository.load());
        repository.save(first, now);
        QFile left(file.fileName());
        QVERIFY(left.open(QIODevice::ReadOnly) && left.readAll() == bytes);
    }

    void save_works_whereAKilledOneLeftItsLock()
    {
        const QTemporaryDir folder;
        QFile lock(folder.filePath(QStringLiteral("settings.ini.lock")));
        QVERIFY(lock.open(QIODevice::WriteOnly)); // empty, as it is until its owner's name is in it
        FrameRepository repository({folder.filePath(QStringLiteral("settings.ini")), key});
        repository.save(first, now);
        QCOMPARE(loadAfresh(folder.filePath(QStringLiteral("settings.ini"))), first);
        QVERIFY(!lock.exists());
    }

    void save_ofWhatIsTyped_waitsUntilItRestsOrIsWanted()
    {
        using namespace std::chrono_literals;
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("settings.ini"));
        {
            FrameRepository repository({path, key}, 1ms);
            repository.save(first, typed);
            QTRY_COMPARE(loadAfresh(path), first);
        }
        FrameRepository repository({path, key}, 1h);
        repository.save({1, 2, 3, 4}, typed);
        QCoreApplication::processEvents();
        repository.save(second, typed);
        repository.save({1, 2, qQNaN(), 4}, typed); // is none to save
        QCOMPARE(loadAfresh(path), first);
        const auto written = repository.allWritten();
        QTRY_VERIFY(written.isFinished());
        QCOMPARE(loadAfresh(path), second);
        FrameRepository({path, key}, 1h).save(first, typed);
        QCOMPARE(loadAfresh(path), first);
    }

    void save_doesNotWaitForTheLock_butItsEndDoes()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("settings.ini"));
        {
            FrameRepository repository({path, key});
            QLockFile lock(path + QStringLiteral(".lock"));
            QVERIFY(lock.lock());
            repository.save(first, FrameRepository::Pace::AtOnce);
            repository.save(second, FrameRepository::Pace::AtOnce);
            lock.unlock(); // too late for one that has waited and given up
        }
        QCOMPARE(loadAfresh(path), second);
    }

    void save_keepsTheEarlierFile_whenItCannotBeWritten()
    {
        struct Row {
            CaptureFrame area = second;
            bool readOnly = false; ///< the folder
            rlim_t largest = RLIM_INFINITY; ///< no file can grow beyond it, as on a full disk
        };
        for (const auto &[area, readOnly, largest] :
             {Row{.area = {1, 2, qQNaN(), 4}}, Row{.readOnly = true}, Row{.largest = 0},
              Row{.largest = 4096}}) {
            const QTemporaryDir folder;
            QFile file(folder.filePath(QStringLiteral("settings.ini")));
            QSettings(file.fileName(), QSettings::IniFormat)
                .setValue(key + u'2', QString(9999, u'a'));
            FrameRepository repository({file.fileName(), key});
            repository.save(first, now);
            if (readOnly) { // The file could be written, but not replaced in one step.
                QVERIFY(file.setPermissions(QFile::Permissions(0x6666)));
                QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x5555)));
                QVERIFY(geteuid() != 0 || seteuid(65534) == 0); // Root may write all the same.
            }
            rlimit before{};
            getrlimit(RLIMIT_FSIZE, &before);
            const rlimit full{.rlim_cur = largest, .rlim_max = before.rlim_max};
            std::signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &full);
            repository.save(area, now);
            setrlimit(RLIMIT_FSIZE, &before);
            QCOMPARE(seteuid(getuid()), 0);
            QCOMPARE(repository.load(), first);
            QCOMPARE(loadAfresh(file.fileName()), first);
            QVERIFY(file.size() > 9999);
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
            // It goes on once the disk takes something again.
            QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7700)));
            repository.save(second, FrameRepository::Pace::AtOnce);
            const auto written = repository.allWritten();
            QTRY_VERIFY(written.isFinished());
            QCOMPARE(loadAfresh(file.fileName()), second);
        }
    }
};

QTEST_GUILESS_MAIN(FrameRepositoryTest)
#include "FrameRepositoryTest.moc"
