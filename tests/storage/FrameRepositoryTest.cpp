// SPDX-License-Identifier: MIT
#include "storage/FrameRepository.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <unistd.h>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame first{-1920.5, 0.1, 800, 600};
constexpr CaptureFrame second{10, 20, 300, 200};
const QString key = QStringLiteral("captureFrame");

/** While it lives, permissions count even if root runs the test, if this is asked for. */
class AsOrdinaryUser
{
public:
    explicit AsOrdinaryUser(bool asked)
        : ok_(!asked || geteuid() != 0 || seteuid(65534) == 0)
    {
    }
    ~AsOrdinaryUser() { ok_ = seteuid(getuid()) == 0; }
    Q_DISABLE_COPY_MOVE(AsOrdinaryUser)
    bool ok() const { return ok_; }

private:
    bool ok_;
};

/** No file can grow beyond `size` bytes while it lives, as on a full disk. */
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{.rlim_cur = size, .rlim_max = before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit before_{};
};

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

FrameRepository repositoryAt(const QString &path)
{
    return FrameRepository(std::make_unique<QSettings>(path, QSettings::IniFormat), key);
}

} // namespace

class FrameRepositoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void standardDefaults_lieInTheConfigurationFolder();
    void load_isNothing_whenTheFileIsBroken_data();
    void load_isNothing_whenTheFileIsBroken();
    void save_keepsWhatElseIsInTheFile();
    void save_keepsTheEarlierArea_whenAFieldIsNotFinite();
    void save_keepsTheEarlierFile_whenItCannotBeWritten_data();
    void save_keepsTheEarlierFile_whenItCannotBeWritten();
    void save_isSilent_whenAFolderIsInTheFilesPlace();

private:
    /** What a new process would load: QSettings keeps what it knows of a path, so under another. */
    std::optional<CaptureFrame> loadAfresh() const
    {
        QTemporaryDir elsewhere;
        const QString copy = elsewhere.filePath(QStringLiteral("copy.ini"));
        return QFile::copy(path_, copy) ? repositoryAt(copy).load() : std::nullopt;
    }
    QStringList filesBesides() const
    {
        return QDir(QFileInfo(path_).path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> folder_;
    QString path_;
};

void FrameRepositoryTest::init()
{
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(folder_->isValid());
    path_ = folder_->filePath(QStringLiteral("settings.ini"));
}

void FrameRepositoryTest::standardDefaults_lieInTheConfigurationFolder()
{
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder_->filePath(QStringLiteral("new"))));
    FrameRepository repository(standardUserDefaults(), key);
    QCOMPARE(repository.load(), std::nullopt);

    repository.save(first);
    path_ = folder_->filePath(QStringLiteral("new/glimmerpane/glimmerpane.ini"));
    QCOMPARE(filesBesides(), QStringList(QStringLiteral("glimmerpane.ini")));
    QCOMPARE(loadAfresh(), first);
    repository.save(second);
    QCOMPARE(repository.load(), second);
    QCOMPARE(loadAfresh(), second);
}

void FrameRepositoryTest::load_isNothing_whenTheFileIsBroken_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = R"({\"x\":1,\"y\":2,\"width\":3,\"height\":4})";
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half a line") << QByteArray("[General]\ncaptureF");
    QTest::newRow("half a value") << QByteArray("[General]\ncaptureFrame=\"@ByteArray({\\\"x\\\":");
    QTest::newRow("string") << "[General]\ncaptureFrame=\"" + good + "\"\n";
    QTest::newRow("byte array not closed")
        << "[General]\ncaptureFrame=\"@ByteArray(" + good + "\"\n";
    QTest::newRow("empty byte array") << QByteArray("[General]\ncaptureFrame=@ByteArray()\n");
    QTest::newRow("no value") << QByteArray("[General]\ncaptureFrame\n");
    QTest::newRow("list") << QByteArray("[General]\ncaptureFrame=1, 2, 3, 4\n");
    QTest::newRow("half a variant")
        << QByteArray("[General]\ncaptureFrame=@Variant(\\0\\0\\0\\xc\\xff\\xff)\n");
    QTest::newRow("other section") << "[Other]\ncaptureFrame=\"@ByteArray(" + good + ")\"\n";
    QTest::newRow("section not closed") << QByteArray("[Gen");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QByteArray noise;
    for (unsigned value = 1; noise.size() < 65536; value = value * 1664525U + 1013904223U) {
        noise.append(char(value >> 24));
    }
    QTest::newRow("noise") << noise;
}

void FrameRepositoryTest::load_isNothing_whenTheFileIsBroken()
{
    QFETCH(QByteArray, bytes);
    write(path_, bytes);
    FrameRepository repository = repositoryAt(path_);
    QCOMPARE(repository.load(), std::nullopt);
    repository.save(first);
    QCOMPARE(loadAfresh(), first);
}

void FrameRepositoryTest::save_keepsWhatElseIsInTheFile()
{
    write(path_, "[General]\nother=1\nhalf a line\n[Window]\nwidth=7\n[Broken\n");
    repositoryAt(path_).save(first);
    const QSettings settings(path_, QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("other")).toInt(), 1);
    QCOMPARE(settings.value(QStringLiteral("Window/width")).toInt(), 7);
    QCOMPARE(loadAfresh(), first);
}

void FrameRepositoryTest::save_keepsTheEarlierArea_whenAFieldIsNotFinite()
{
    using Limits = std::numeric_limits<double>;
    FrameRepository repository = repositoryAt(path_);
    repository.save(first);
    for (const double width : {Limits::quiet_NaN(), Limits::infinity()}) {
        repository.save({1, 2, width, 4});
        QCOMPARE(repository.load(), first);
        QCOMPARE(loadAfresh(), first);
    }
}

void FrameRepositoryTest::save_keepsTheEarlierFile_whenItCannotBeWritten_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<quint64>("sizeLimit");
    QTest::newRow("read-only folder") << true << quint64(RLIM_INFINITY);
    QTest::newRow("disk full") << false << quint64(0);
    QTest::newRow("disk full after a part of it") << false << quint64(4096);
}

void FrameRepositoryTest::save_keepsTheEarlierFile_whenItCannotBeWritten()
{
    QFETCH(bool, readOnly);
    QFETCH(quint64, sizeLimit);
    QSettings(path_, QSettings::IniFormat).setValue(QStringLiteral("big"), QString(9999, u'a'));
    repositoryAt(path_).save(first);
    const QByteArray before = read(path_);
    QVERIFY(before.size() > 9999);
    if (readOnly) {
        const auto everybody
            = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        // The file could be written, but not replaced in one step.
        QVERIFY(QFile::setPermissions(path_, everybody | QFile::WriteOwner | QFile::WriteOther));
        QVERIFY(QFile::setPermissions(folder_->path(), everybody));
    }
    {
        const AsOrdinaryUser user(readOnly);
        QVERIFY(user.ok());
        const FileSizeLimit limit(sizeLimit);
        repositoryAt(path_).save(second);
    }
    QCOMPARE(read(path_), before);
    QCOMPARE(filesBesides(), QStringList(QStringLiteral("settings.ini")));
    QCOMPARE(loadAfresh(), first);
}

void FrameRepositoryTest::save_isSilent_whenAFolderIsInTheFilesPlace()
{
    QVERIFY(QDir().mkpath(path_ + QStringLiteral("/kept")));
    FrameRepository repository = repositoryAt(path_);
    QCOMPARE(repository.load(), std::nullopt);
    repository.save(first);
    QVERIFY(QFileInfo(path_ + QStringLiteral("/kept")).isDir());
}

QTEST_GUILESS_MAIN(FrameRepositoryTest)
#include "FrameRepositoryTest.moc"
