// SPDX-License-Identifier: MIT
#include "storage/NamedAreas.h"

#include "storage/CaptureFrameJson.h"

#include <QFile>
#include <QLockFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent>

using namespace glimmerpane;

namespace
{

constexpr CaptureFrame first{-1920.5, 0.1, 800, 600};
constexpr CaptureFrame second{10, 20, 300, 200};

struct Store {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("settings.ini"));
    NamedAreas areas{{path, QStringLiteral("areas")}};
    SettingsFile current{path, QStringLiteral("captureFrame")};

    Store() { current.write(*toJson(first)); }

    void append(const QByteArray &text) const
    {
        QFile file(path);
        file.open(QIODevice::Append);
        file.write(text);
    }
    QByteArray content() const
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }
};

} // namespace

class NamedAreasTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_areAnyText()
    {
        const Store store;
        const QStringList names{QStringLiteral("Desk"),
                                QStringLiteral("desk"),
                                QStringLiteral(" a/b\\c%2F=[x]"),
                                QStringLiteral("%"),
                                QStringLiteral("General/"),
                                QString::fromUtf8("Präsentation 😀"),
                                QString(NamedAreas::longestName, QChar(0x3042))};
        CaptureFrame area = second;
        for (const QString &name : names) {
            QVERIFY(store.areas.save(name, first));
            QVERIFY(store.areas.save(name, area)); // replaces it
            area.x += 1;
        }
        area = second;
        for (const QString &name : names) {
            QVERIFY(store.areas.find(name) == area);
            area.x += 1;
        }
        QVERIFY(store.areas.forget(names[0]));
        QVERIFY(!store.areas.forget(names[0]) && !store.areas.find(names[0]));
        QCOMPARE(store.areas.list()->areas.size(), std::size_t(names.size() - 1));
        QVERIFY(captureFrameFromJson(store.current.read().value()) == first);
        for (const QString &odd :
             {QString(), QStringLiteral(" "), QStringLiteral("a\nb"), QStringLiteral("\x7f"),
              QString(QChar(0xd800)), QString(QChar(0xfffd)), QString(QChar(0x2028)),
              QString(NamedAreas::longestName + 1, u'a')}) {
            const auto saved = store.areas.save(odd, first);
            QVERIFY(!saved && !saved.error().text.isEmpty());
        }
        QVERIFY(!store.areas.save(QStringLiteral("x"), {1, 2, qInf(), 3}));
    }

    void unreadableEntries_areNamed_andLoseNothing()
    {
        const Store store;
        QVERIFY(store.areas.save(QStringLiteral("good"), second));
        store.append("none=\nnumber=7\nlist=1, 2\ncut=\"@ByteArray({\\\"x\\\":1\"\n"
                     "array=@ByteArray([1])\n");
        QVERIFY(store.areas.save(QStringLiteral("other"), first));
        const auto list = store.areas.list();
        QCOMPARE(list->areas.size(), std::size_t(2));
        QCOMPARE(list->unreadable, QStringLiteral("array cut list none number").split(u' '));
        const auto cut = store.areas.find(QStringLiteral("cut"));
        QVERIFY(!cut && cut.error().text.contains(store.path));
        QVERIFY(store.content().contains("number=7") && store.content().contains("cut="));
    }

    void limits_areSaid_andLoseNothing()
    {
        const Store store;
        const QString name(NamedAreas::longestName - 2, QChar(0x3042));
        const CaptureFrame widest{-1.2345678901234567e-300, -1.2345678901234567e-300,
                                  -1.2345678901234567e-300, -1.2345678901234567e-300};
        for (int i = 0; i < NamedAreas::most; ++i) {
            QVERIFY(store.areas.save(name + QString::number(i), widest));
        }
        QVERIFY(store.areas.save(name + u'0', second));
        QVERIFY(!store.areas.save(QStringLiteral("x"), second));
        QVERIFY(store.content().size() < SettingsFile::largest);

        const Store nearlyFull;
        nearlyFull.append("[Other]\nx=" + QByteArray(SettingsFile::largest - 300, 'x') + '\n');
        const QByteArray before = nearlyFull.content();
        QVERIFY(!nearlyFull.areas.save(name, second));
        QCOMPARE(nearlyFull.content(), before);
        nearlyFull.append("y=" + QByteArray(999, 'x') + '\n');
        QVERIFY(!nearlyFull.areas.list() && !nearlyFull.areas.save(QStringLiteral("x"), second));

        const Store locked;
        QLockFile lock(locked.path + QStringLiteral(".lock"));
        QVERIFY(lock.lock());
        QVERIFY(!locked.areas.save(QStringLiteral("x"), second));
    }

    void savesAtTheSameTime_loseNone()
    {
        const Store store;
        std::vector<QFuture<bool>> saves;
        for (int i = 0; i < 8; ++i) {
            saves.push_back(QtConcurrent::run([&store, i] {
                return NamedAreas({store.path, QStringLiteral("areas")})
                    .save(QString::number(i), second)
                    .has_value();
            }));
        }
        qsizetype saved = 0;
        for (auto &save : saves) {
            saved += save.result() ? 1 : 0;
        }
        QVERIFY(saved > 0);
        QCOMPARE(store.areas.list()->areas.size(), std::size_t(saved));
    }
};

QTEST_GUILESS_MAIN(NamedAreasTest)
#include "NamedAreasTest.moc"
