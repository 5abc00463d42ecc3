// The curve file, byte by byte.

#include "curve/qcurve.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"
#include "support/datafolder.h"
#include "support/fulldisk.h"
#include "support/testmain.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QtEndian>

#include <cmath>
#include <limits>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

RecordingLooperTraining& session() {
    return *Singleton::instance().recordingLooperTraining();
}

QByteArray contentOf(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

template <typename T> QByteArray littleEndian(T value) {
    QByteArray bytes(sizeof(T), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray header(qint32 bpm, qint32 count) {
    return littleEndian(bpm) + littleEndian(count);
}

QByteArray record(qint32 time, double position, double rawAngle, qint16 direction, char soundOn) {
    return littleEndian(time) + littleEndian(position) + littleEndian(rawAngle) + littleEndian(direction) +
           QByteArray(1, soundOn);
}

CurvePoint point(double time, double position, double rawAngle, std::int32_t direction, bool soundOn) {
    CurvePoint p;
    p.time = time;
    p.position = position;
    p.rawAngle = rawAngle;
    p.direction = direction;
    p.soundOn = soundOn;
    p.pitch = 1.25; // neither is kept
    p.timecode = 4711;
    return p;
}

bool isZero(const CurvePoint& p) {
    return p.time == 0.0 && p.position == 0.0 && p.rawAngle == 0.0 && p.angle == 0.0 && p.pitch == 0.0 &&
           p.timecode == 0 && p.soundOn == 0;
}

// What the process takes of the machine's memory.
qint64 residentBytes() {
    const QList<QByteArray> pages = contentOf(u"/proc/self/statm"_s).split(' ');
    return pages.size() > 1 ? pages[1].toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

struct Fixture {
    CurvePointStore store;
    std::unique_ptr<QCurve> curve;
    Fixture() {
        store.reserve();
        curve = std::make_unique<QCurve>(ModelGraph::INPUT_1, store);
    }
};

} // namespace

class tst_CurveFile : public QObject {
    Q_OBJECT

    QString m_data;
    QTemporaryDir m_folder;
    int m_files = 0;

    QString newFile() { return m_folder.filePath(u"%1.grw"_s.arg(++m_files)); }
    QString fileWith(const QByteArray& content) {
        const QString name = newFile();
        QFile file(name);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? name : QString();
    }

private Q_SLOTS:
    void initTestCase() { m_data = ownDataFolder(); }
    void init() {
        session().setBpmValue(84.0);
        session().setBpmEffective(84.0);
    }

    // ---- writing ----

    void onAFullDiskTheFileSpeaksOfThePointsThatItHolds() {
        Fixture f;
        for (int i = 0; i < 20000; ++i) {
            f.store.append(point(i, 2.0 * i, 0.25 * i, 0, true));
        }
        const QString name = newFile();
        {
            const FullDisk disk(100003);
            QVERIFY(disk.isSet());
            QVERIFY(!f.curve->saveToPath(name));
        }
        Fixture read;
        read.curve->loadFromFile(name, false);
        const CurvePointStore::View all = read.curve->points();
        QCOMPARE(all.size(), std::size_t((QFileInfo(name).size() - 8) / 23));
        QVERIFY(all.size() > 3000);
        for (std::size_t i = 0; i < all.size(); ++i) {
            QCOMPARE(all[i].time, double(i));
            QCOMPARE(all[i].position, 2.0 * double(i));
        }
    }

    void aFileWithoutAWholePointIsTakenAwayAgain_data() {
        QTest::addColumn<int>("room");
        QTest::newRow("no byte") << 0;
        QTest::newRow("a part of the header") << 5;
        QTest::newRow("the header") << 8;
        QTest::newRow("less than a point") << 30;
    }
    void aFileWithoutAWholePointIsTakenAwayAgain() {
        QFETCH(int, room);
        Fixture f;
        for (int i = 0; i < 2000; ++i) {
            f.store.append(point(i, 2.0 * i, 0.25 * i, 0, true));
        }
        const QString name = newFile();
        {
            const FullDisk disk{rlim_t(room)};
            QVERIFY(disk.isSet());
            QVERIFY(!f.curve->saveToPath(name));
        }
        QVERIFY(!QFile::exists(name));
    }

    void aCurveThatCantBeSavedIsToldWithItsPath() {
        Fixture f;
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        QSignalSpy told(f.curve.get(), &QCurve::s_NotWritten);
        f.curve->saveToFile(u"written"_s);
        QCOMPARE(told.count(), 0);
        const QDir folder(Singleton::instance().pathFile()->pathDirectoryRecording());
        QVERIFY(folder.mkdir(u"in the way.grw"_s));
        f.curve->saveToFile(u"in the way"_s);
        QCOMPARE(told, QList<QVariantList>{{folder.filePath(u"in the way.grw"_s)}});
    }

    void theBytesOfASmallFile() {
        Fixture f;
        f.store.append(point(1.0, 2.0, -0.5, 0, true));
        f.store.append(point(258.9, -2.0, 720.0, 1, false));
        f.store.append(point(65536.0, 0.0, 0.0, 2, true));
        session().setBpmEffective(92.7);
        const QString name = newFile();
        QVERIFY(f.curve->saveToPath(name));
        // clang-format off
        static const unsigned char expected[] = {
            0x5C, 0x00, 0x00, 0x00,                         // 92
            0x03, 0x00, 0x00, 0x00,                         // 3 points
            0x01, 0x00, 0x00, 0x00,                         // time 1
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x40, // 2.0
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0xBF, // -0.5
            0x01, 0x00,                                     // forward is 1
            0x01,
            0x02, 0x01, 0x00, 0x00,                         // time 258
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0, // -2.0
            0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0x86, 0x40, // 720.0
            0x00, 0x00,                                     // backward is 0
            0x00,
            0x00, 0x00, 0x01, 0x00,                         // time 65536
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
            0x02, 0x00,                                     // undefined
            0x01,
        };
        // clang-format on
        QCOMPARE(contentOf(name), QByteArray(reinterpret_cast<const char*>(expected), sizeof expected));
    }

    void aFileOfNoPointsHasEightBytesAndStillCarriesTheTempo() {
        Fixture f;
        session().setBpmEffective(126.0);
        const QString name = newFile();
        QVERIFY(f.curve->saveToPath(name));
        QCOMPARE(contentOf(name), header(126, 0));
        session().setBpmValue(84.0);
        f.store.append(point(1.0, 1.0, 1.0, 0, true));
        f.curve->loadFromFile(name, true);
        QVERIFY(f.curve->points().empty());
        QCOMPARE(session().bpmValue(), 126.0);
    }

    void theTempoIsTruncatedTowardsZero() {
        Fixture f;
        for (const auto& [bpm, written] :
             {std::pair{99.999, 99}, std::pair{-99.999, -99}, std::pair{0.5, 0}, std::pair{1e300, 2147483647},
              std::pair{std::numeric_limits<double>::quiet_NaN(), 0}}) {
            session().setBpmEffective(bpm);
            const QString name = newFile();
            QVERIFY(f.curve->saveToPath(name));
            QCOMPARE(contentOf(name), header(written, 0));
        }
    }

    void aTimeBeyond32BitsIsHeldAtTheEnd() {
        Fixture f;
        f.store.append(point(4294967296.0, 1.0, 0.0, 0, false));
        const QString name = newFile();
        QVERIFY(f.curve->saveToPath(name));
        QCOMPARE(contentOf(name).mid(8, 4), littleEndian(qint32{2147483647}));
    }

    void aCurveIsSavedIntoTheRecordingsFolderUnderItsName() {
        Fixture f;
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        Singleton::instance().pathFile()->newPathDirectory_recording();
        f.curve->saveToFile(u"0_x_y.2 é"_s);
        const QString folder =
            m_data + u"/Recording/"_s + Singleton::instance().pathFile()->directoryRecording();
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList(u"0_x_y.2 é.grw"_s));
        QCOMPARE(contentOf(folder + u"/0_x_y.2 é.grw"_s).size(), 8 + 23);
    }

    void anOlderFileOfThatNameIsReplaced() {
        Fixture f;
        const QString name = fileWith(QByteArray(1000, 'x'));
        QVERIFY(f.curve->saveToPath(name));
        QCOMPARE(contentOf(name).size(), 8);
    }

    void aFileThatCantBeOpenedIsLeftInSilence() {
        Fixture f;
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        const QString plain = fileWith("x");
        QVERIFY(!f.curve->saveToPath(plain + u"/below.grw"_s));
        f.curve->saveToFile(u"no such folder/name"_s);
        QVERIFY(f.curve->points().size() == 1);
    }

    void aDiskThatIsFullIsNoticed() {
        if (!QFile::exists(u"/dev/full"_s)) {
            QSKIP("there is no /dev/full");
        }
        Fixture f;
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        QVERIFY(!f.curve->saveToPath(u"/dev/full"_s));
    }

    // ---- reading ----

    void aSmallFileIsReadBack() {
        Fixture f;
        f.curve->loadFromFile(fileWith(header(90, 3) + record(1, 2.0, 370.0, 1, 1) +
                                       record(97, -2.0, -10.0, 0, 0) + record(193, 5.5, 45.0, 7, '\x80')),
                              false);
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all.size(), std::size_t{3});
        QCOMPARE(all[0].time, 1.0);
        QCOMPARE(all[0].position, 2.0);
        QCOMPARE(all[0].rawAngle, 370.0);
        QCOMPARE(all[0].angle, 10.0);
        QCOMPARE(all[0].direction, 0);
        QCOMPARE(all[0].soundOn, 1);
        QCOMPARE(all[1].direction, 1);
        QCOMPARE(all[1].soundOn, 0);
        QCOMPARE(all[2].direction, 2);
        QCOMPARE(all[2].soundOn, 1); // any byte but zero
        for (std::size_t i = 0; i < 3; ++i) {
            QCOMPARE(all[i].pitch, 0.0);
            QCOMPARE(all[i].timecode, 0);
        }
    }

    void aNegativeRawAngleReadsBackWithAnAngleOfOneTurn() {
        Fixture f;
        f.curve->loadFromFile(
            fileWith(header(90, 2) + record(1, 0.0, -10.0, 1, 1) + record(2, 0.0, -730.0, 1, 1)), false);
        QCOMPARE(f.curve->points()[0].rawAngle, -10.0);
        QCOMPARE(f.curve->points()[0].angle, 350.0);
        QCOMPARE(f.curve->points()[1].angle, 350.0);
    }

    void theTempoIsTakenWhereAskedFor() {
        Fixture f;
        QList<int> announced;
        QObject ear;
        connect(&session(), &RecordingLooperTraining::s_UpdateBpm, &ear, [&](int bpm) { announced << bpm; });
        const QString name = fileWith(header(97, 0));
        f.curve->loadFromFile(name, false);
        QCOMPARE(session().bpmValue(), 84.0);
        QVERIFY(announced.isEmpty());
        f.curve->loadFromFile(name, true);
        QCOMPARE(session().bpmValue(), 97.0);
        QCOMPARE(announced, QList<int>{97});
    }

    void aTempoThatNobodyCanPlayToLeavesTheTempoAsItIs_data() {
        QTest::addColumn<int>("bpm");
        QTest::addColumn<double>("expected");
        QTest::newRow("0") << 0 << 84.0;
        QTest::newRow("19") << 19 << 84.0;
        QTest::newRow("20") << 20 << 20.0;
        QTest::newRow("400") << 400 << 400.0;
        QTest::newRow("401") << 401 << 84.0;
        QTest::newRow("-100") << -100 << 84.0;
        QTest::newRow("the largest") << 2147483647 << 84.0;
        QTest::newRow("the smallest") << -2147483647 - 1 << 84.0;
    }
    void aTempoThatNobodyCanPlayToLeavesTheTempoAsItIs() {
        QFETCH(int, bpm);
        Fixture f;
        int announced = 0;
        QObject ear;
        connect(&session(), &RecordingLooperTraining::s_UpdateBpm, &ear, [&] { ++announced; });
        f.curve->loadFromFile(fileWith(header(bpm, 1) + record(5, 6.0, 7.0, 1, 1)), true);
        QTEST(session().bpmValue(), "expected");
        QCOMPARE(announced, session().bpmValue() == 84.0 ? 0 : 1);
        QCOMPARE(f.curve->points().size(), std::size_t{1}); // the curve is read all the same
    }

    void loadingReplacesWhatWasThere() {
        Fixture f;
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        f.store.append(point(2.0, 2.0, 3.0, 0, true));
        f.store.append(point(3.0, 2.0, 3.0, 0, true));
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        f.curve->minMaxPosition(0, 100, min, max, found);
        QCOMPARE(f.curve->lastVisible(), std::size_t{2});
        f.curve->loadFromFile(fileWith(header(90, 1) + record(5, 6.0, 7.0, 1, 1)), false);
        QCOMPARE(f.curve->points().size(), std::size_t{1});
        QCOMPARE(f.curve->points()[0].time, 5.0);
        QCOMPARE(f.curve->lastVisible(), std::size_t{0});
    }

    void aFileThatCantBeOpenedLeavesAnEmptyCurveAndTheTempo() {
        Fixture f;
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        f.curve->loadFromFile(m_folder.filePath(u"there is none.grw"_s), true);
        QVERIFY(f.curve->points().empty());
        QCOMPARE(session().bpmValue(), 84.0);
        f.store.append(point(1.0, 2.0, 3.0, 0, true));
        f.curve->loadFromFile(m_folder.path(), true); // a folder
        QVERIFY(f.curve->points().empty());
        QCOMPARE(session().bpmValue(), 84.0);
    }

    void nothingChecksThatTimeRises() {
        Fixture f;
        f.curve->loadFromFile(fileWith(header(90, 3) + record(9, 1.0, 0.0, 1, 1) + record(9, 2.0, 0.0, 1, 1) +
                                       record(3, 3.0, 0.0, 1, 1)),
                              false);
        QCOMPARE(f.curve->points().size(), std::size_t{3});
        for (int time = -3; time < 12; ++time) {
            QVERIFY(f.curve->findFirstIndex(time) < 3);
            QVERIFY(f.curve->findLastIndex(time) < 3);
        }
    }

    void randomCurvesComeBackAsTheyWere() {
        QRandomGenerator random(5);
        for (int round = 0; round < 60; ++round) {
            Fixture f;
            std::vector<CurvePoint> written;
            double time = 0.0;
            const int count = random.bounded(400);
            for (int i = 0; i < count; ++i) {
                written.push_back(point(time, random.generateDouble() * 1e6 - 5e5,
                                        random.generateDouble() * 1e5 - 5e4, int(random.bounded(3)),
                                        random.bounded(2) == 1));
                f.store.append(written.back());
                time += 1.0 + random.bounded(5000);
            }
            session().setBpmEffective(double(random.bounded(40, 200)) + 0.5);
            const QString name = newFile();
            QVERIFY(f.curve->saveToPath(name));
            QCOMPARE(contentOf(name).size(), 8 + 23 * count);
            Fixture other;
            other.curve->loadFromFile(name, true);
            QCOMPARE(session().bpmValue(), std::trunc(session().bpmEffective()));
            const CurvePointStore::View all = other.curve->points();
            QCOMPARE(all.size(), written.size());
            for (std::size_t i = 0; i < written.size(); ++i) {
                QCOMPARE(all[i].time, written[i].time);
                QCOMPARE(all[i].position, written[i].position);
                QCOMPARE(all[i].rawAngle, written[i].rawAngle);
                QCOMPARE(all[i].direction, written[i].direction);
                QCOMPARE(all[i].soundOn, written[i].soundOn);
                QVERIFY(all[i].angle >= 0.0 && all[i].angle < 360.0);
                const double turns = (all[i].rawAngle - all[i].angle) / 360.0;
                QVERIFY(std::fabs(turns - std::round(turns)) < 1e-9);
                QCOMPARE(all[i].pitch, 0.0);
                QCOMPARE(all[i].timecode, 0);
            }
            // And the same bytes once more.
            const QString again = newFile();
            QVERIFY(other.curve->saveToPath(again));
            QCOMPARE(contentOf(again), contentOf(name));
        }
    }

    // ---- broken files ----

    void anEmptyFileIsAnEmptyCurve() {
        Fixture f;
        f.curve->loadFromFile(fileWith({}), false);
        QVERIFY(f.curve->points().empty());
        QCOMPARE(session().bpmValue(), 84.0);
    }

    void aFileThatEndsInTheHeaderIsAnEmptyCurve() {
        Fixture f;
        for (int length = 0; length < 8; ++length) {
            session().setBpmValue(84.0);
            // With a count of bytes that aren't 0, so that a part of it would show.
            f.curve->loadFromFile(fileWith(header(0x5A, 0x01010101).left(length)), true);
            QVERIFY(f.curve->points().empty());
            // A tempo that is whole is taken, one that is cut is none.
            QCOMPARE(session().bpmValue(), length >= 4 ? 90.0 : 84.0);
        }
    }

    void whatAFilePromisesAndLacksReadsAsZeros() {
        Fixture f;
        const QByteArray whole = header(90, 5) + record(1, 1.0, 1.0, 0, 1) + record(2, 2.0, 2.0, 0, 1);
        f.curve->loadFromFile(fileWith(whole), false);
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all.size(), std::size_t{5});
        QCOMPARE(all[1].position, 2.0);
        for (std::size_t i = 2; i < 5; ++i) {
            QVERIFY(isZero(all[i]));
        }
        f.curve->loadFromFile(fileWith(header(90, 4)), false); // not a byte of a point
        const CurvePointStore::View none = f.curve->points();
        QCOMPARE(none.size(), std::size_t{4});
        for (std::size_t i = 0; i < 4; ++i) {
            QVERIFY(isZero(none[i]));
            QCOMPARE(none[i].direction, 0);
        }
    }

    void aFileCutAnywhereReadsWhatIsWhole() {
        const QByteArray whole = header(90, 2) + record(1, 1.0, 1.0, 0, 1) + record(2, 2.0, 2.0, 0, 1);
        for (qsizetype length = 8; length < whole.size(); ++length) {
            Fixture f;
            f.curve->loadFromFile(fileWith(whole.left(length)), false);
            const CurvePointStore::View all = f.curve->points();
            QCOMPARE(all.size(), std::size_t{2});
            QCOMPARE(all[0].position, length >= 8 + 12 ? 1.0 : 0.0);
            QCOMPARE(all[0].soundOn, length >= 8 + 23 ? 1 : 0);
            QCOMPARE(all[1].time, length >= 8 + 27 ? 2.0 : 0.0);
            QCOMPARE(all[1].soundOn, 0);
        }
    }

    void aSmallerCountThanTheFileHoldsIsTaken() {
        Fixture f;
        f.curve->loadFromFile(fileWith(header(90, 1) + record(1, 1.0, 1.0, 0, 1) + record(2, 2.0, 2.0, 0, 1)),
                              false);
        QCOMPARE(f.curve->points().size(), std::size_t{1});
        f.curve->loadFromFile(fileWith(header(90, 0) + record(1, 1.0, 1.0, 0, 1)), false);
        QCOMPARE(f.curve->points().size(), std::size_t{0});
    }

    void aCountNoStoreBlockHoldsCountsAsWhatTheFileHolds_data() {
        QTest::addColumn<int>("count");
        QTest::newRow("one more than a block") << int(CurvePointStore::firstBlock) + 1;
        QTest::newRow("the largest") << 2147483647;
        QTest::newRow("minus one") << -1;
        QTest::newRow("the smallest") << -2147483647 - 1;
    }
    void aCountNoStoreBlockHoldsCountsAsWhatTheFileHolds() {
        QFETCH(int, count);
        Fixture f;
        f.curve->loadFromFile(
            fileWith(header(90, count) + record(1, 1.0, 1.0, 0, 1) + record(2, 2.0, 2.0, 0, 1) + "rest"),
            false);
        QCOMPARE(f.curve->points().size(), std::size_t{2});
        QCOMPARE(f.curve->points()[1].position, 2.0);
        f.curve->loadFromFile(fileWith(header(90, count)), false);
        QVERIFY(f.curve->points().empty());
    }

    void aFewBytesThatClaimAHundredMegabytesDontHangOrFillTheMemory() {
        Fixture f;
        const int count = 100'000'000 / 23;
        f.curve->loadFromFile(fileWith(header(90, count) + record(1, 1.0, 1.0, 0, 1)), false);
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all.size(), std::size_t(count));
        QCOMPARE(all[0].position, 1.0);
        QVERIFY(isZero(all[1]));
        QVERIFY(isZero(all[std::size_t(count) - 1]));
        QCOMPARE(f.store.overflows(), std::uint64_t{0});
    }

    void whatAFileLacksTakesNoMemory_data() {
        QTest::addColumn<int>("records");
        QTest::newRow("none is there") << 0;
        QTest::newRow("a few are there") << 100;
    }
    void whatAFileLacksTakesNoMemory() {
        QFETCH(int, records);
        Fixture f;
        QByteArray content = header(90, int(CurvePointStore::firstBlock));
        for (int i = 0; i < records; ++i) {
            content += record(i + 1, 1.0, 1.0, 0, 1);
        }
        const QString name = fileWith(content);
        const qint64 before = residentBytes();
        QVERIFY(before > 0);
        f.curve->loadFromFile(name, false);
        QVERIFY2(residentBytes() - before < 4 << 20, "reading it");
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all.size(), CurvePointStore::firstBlock);
        std::size_t zeros = 0;
        for (std::size_t i = 0; i < all.size(); ++i) {
            zeros += isZero(all[i]) ? 1U : 0U;
        }
        QCOMPARE(zeros, all.size() - std::size_t(records));
        QVERIFY2(residentBytes() - before < 4 << 20, "walking over it");
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        f.curve->minMaxPosition(0, 1000, min, max, found);
        QVERIFY2(residentBytes() - before < 8 << 20, "looking for its extremes");
    }

    void theMemoryOfALargeCurveIsGivenBackWithTheNextFile() {
        Fixture f;
        constexpr int records = 500000;
        QByteArray content = header(90, records);
        content.reserve(8 + 23 * records);
        for (int i = 0; i < records; ++i) {
            content += record(i + 1, 1.0, 1.0, 0, 1);
        }
        const QString large = fileWith(content);
        f.curve->loadFromFile(large, false);
        QCOMPARE(f.curve->points().size(), std::size_t{records});
        const qint64 before = residentBytes();
        f.curve->loadFromFile(fileWith(header(90, records + 7) + record(1, 1.0, 1.0, 0, 1)), false);
        QVERIFY(before - residentBytes() > (records * qint64{sizeof(CurvePoint)}) / 2);
        // And nothing of it shows behind the new one's end.
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all.size(), std::size_t{records + 7});
        for (std::size_t i = 1; i < all.size(); ++i) {
            QVERIFY(isZero(all[i]));
        }
        f.curve->loadFromFile(large, false);
        QCOMPARE(f.curve->points().back().time, double(records));
    }

    void numbersThatAreNoneGiveAnAngleAllTheSame() {
        Fixture f;
        const double none = std::numeric_limits<double>::quiet_NaN();
        const double endless = std::numeric_limits<double>::infinity();
        f.curve->loadFromFile(
            fileWith(header(90, 2) + record(1, none, none, 1, 1) + record(2, endless, -endless, 1, 1)),
            false);
        const CurvePointStore::View all = f.curve->points();
        QCOMPARE(all.size(), std::size_t{2});
        QCOMPARE(all[0].angle, 0.0);
        QCOMPARE(all[1].angle, 0.0);
    }

    void randomBytesAreReadWithoutHarm() {
        QRandomGenerator random(9);
        Fixture f;
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes(random.bounded(200), '\0');
            for (char& byte : bytes) {
                byte = char(random.bounded(256));
            }
            if (bytes.size() > 8) {
                bytes[7] = char(random.bounded(2) == 0 ? 0 : -1); // mostly a count that can be met
                bytes[6] = 0;
                bytes[5] = 0;
            }
            f.curve->loadFromFile(fileWith(bytes), false);
            const CurvePointStore::View all = f.curve->points();
            for (std::size_t i = 0; i < all.size(); ++i) {
                QVERIFY(all[i].angle >= 0.0 && all[i].angle < 360.0);
                QVERIFY(all[i].direction >= 0 && all[i].direction <= 2);
                QVERIFY(all[i].soundOn <= 1);
            }
        }
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_CurveFile)
#include "tst_curvefile.moc"
