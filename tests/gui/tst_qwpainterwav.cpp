#include "painter/qwpainterwav.h"

#include "module/wavedata.h"
#include "painter/graphstyle.h"
#include "support/testmain.h"

#include <QTest>

namespace {

std::shared_ptr<WaveData> ramp(std::size_t frames) {
    auto wave = std::make_shared<WaveData>(48000, 2, frames);
    for (std::size_t i = 0; i < frames; ++i) {
        wave->samples(0)[i] = std::int16_t(i % 200) - 100;
        wave->samples(1)[i] = 9999; // never looked at
    }
    wave->setPeaks(-100, 99);
    return wave;
}

QImage areaPicture(const WaveData& wave, const WaveSegment& segment) {
    return wavePicture(wave.samples(0), segment.first, segment.end, waveFactor(wave), {}, segment.color);
}

QImage fullPicture(const WaveData& wave, const std::vector<WaveSegment>& segments) {
    return wavePicture(wave.samples(0), 0, std::int64_t(wave.length()), waveFactor(wave), segments,
                       graphGrey);
}

const std::vector<WaveSegment> twoAreas{{0, 30000, QColor(208, 0, 24)}, {60000, 72000, QColor(1, 194, 193)}};

} // namespace

class TestQWPainterWav : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void atFirstThereIsNoWave() {
        QWPainterWav wav(ModelGraph::INPUT_DECKB);
        QCOMPARE(wav.deck(), ModelGraph::INPUT_DECKB);
        QVERIFY(!wav.hasWave());
        QVERIFY(wav.fullWaveImage().isNull());
        QVERIFY(wav.areaWaveImage(0).isNull());
        QVERIFY(wav.wavePairs().empty());
    }
    void theWholeWaveIsGreyOutsideTheAreasAndEachAreaHasItsPicture() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        wav.build(wave, twoAreas);
        QVERIFY(wav.hasWave());
        QCOMPARE(wav.segments(), twoAreas);
        const double factor = waveFactor(*wave);
        QCOMPARE(factor, 100.0 / 199.0);
        QCOMPARE(wav.fullWaveImage(), wavePicture(wave->samples(0), 0, 72000, factor, twoAreas, graphGrey));
        QCOMPARE(wav.areaWaveImage(0),
                 wavePicture(wave->samples(0), 0, 30000, factor, {}, twoAreas[0].color));
        QCOMPARE(wav.areaWaveImage(1),
                 wavePicture(wave->samples(0), 60000, 72000, factor, {}, twoAreas[1].color));
        QCOMPARE(wav.wavePairs().size(), std::size_t{2700});
    }
    void aPlaceWithoutAnAreaHasNoPicture() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        wav.build(ramp(72000), twoAreas);
        QVERIFY(wav.areaWaveImage(-1).isNull());
        QVERIFY(wav.areaWaveImage(2).isNull());
    }
    // A file may name any number of areas: the pictures of the late ones are made as they are wanted.
    void ofThousandsOfAreasEachHasItsPictureWhenItIsWanted() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        std::vector<WaveSegment> segments;
        for (int i = 0; i < 7000; ++i) {
            segments.push_back({i * 10, i * 10 + 10, QColor(i % 256, 0, 0)});
        }
        wav.build(wave, segments);
        QVERIFY(!wav.areaWaveImage(63).isNull());
        QVERIFY(wav.areaWaveImage(64).isNull());
        for (const int i : {0, 63, 64, 65, 6999, 64}) {
            wav.want(i);
            QTRY_VERIFY(!wav.areaWaveImage(i).isNull());
            QCOMPARE(wav.areaWaveImage(i), areaPicture(*wave, segments[std::size_t(i)]));
        }
        wav.want(7000);
        wav.finish();
        QVERIFY(wav.areaWaveImage(7000).isNull());
        for (int i = 100; i < 200; ++i) { // the memory that they take has an end
            wav.want(i);
            wav.finish();
        }
        int kept = 0;
        for (int i = 64; i < 7000; ++i) {
            kept += wav.areaWaveImage(i).isNull() ? 0 : 1;
        }
        QCOMPARE(kept, 64);
        QVERIFY(!wav.areaWaveImage(199).isNull() && wav.areaWaveImage(100).isNull());
    }
    void ofLateAreasNoMorePicturesAreKeptAfterAnEdit() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        std::vector<WaveSegment> segments;
        for (int i = 0; i < 400; ++i) {
            segments.push_back({i * 10, i * 10 + 10, QColor(i % 256, 0, 0)});
        }
        wav.build(wave, segments);
        const auto kept = [&] {
            int count = 0;
            for (int i = 64; i < 400; ++i) {
                count += wav.areaWaveImage(i).isNull() ? 0 : 1;
            }
            return count;
        };
        for (int edit = 0; edit < 3; ++edit) {
            for (int i = 0; i < 100; ++i) {
                wav.want(64 + edit * 100 + i);
                wav.finish();
            }
            QCOMPARE(kept(), 64);
            segments[0].end = 9 - edit;
            wav.build(wave, segments);
            wav.finish();
            QCOMPARE(kept(), 64);
        }
    }
    // The key that edits an area waits for none of them.
    void anEditIsDrawnBetweenTheEventsThatFollow() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        wav.build(wave, twoAreas);
        const qint64 full = wav.fullWaveImage().cacheKey();
        const qint64 first = wav.areaWaveImage(0).cacheKey();
        const qint64 second = wav.areaWaveImage(1).cacheKey();
        auto edited = twoAreas;
        edited[0].end = 20000;
        edited.push_back({20000, 60000, QColor(254, 194, 0)});
        wav.build(wave, edited);
        QCOMPARE(wav.segments(), edited);
        QCOMPARE(wav.fullWaveImage().cacheKey(), full);
        QCOMPARE(wav.areaWaveImage(1).cacheKey(), second);
        QVERIFY(wav.areaWaveImage(2).isNull());
        QTRY_VERIFY(!wav.areaWaveImage(2).isNull());
        QCOMPARE(wav.areaWaveImage(0), areaPicture(*wave, edited[0]));
        QCOMPARE(wav.areaWaveImage(2), areaPicture(*wave, edited[2]));
        QCOMPARE(wav.fullWaveImage(), fullPicture(*wave, edited));
        QCOMPARE(wav.areaWaveImage(1).cacheKey(), second); // it didn't change
        QVERIFY(wav.areaWaveImage(0).cacheKey() != first);
    }
    void theLastPictureOfAnEditedAreaStandsUntilItsNextOneIsThere() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        wav.build(wave, twoAreas);
        const QImage before = wav.areaWaveImage(0);
        auto edited = twoAreas;
        edited[0].end = 20000;
        wav.build(wave, edited);
        QCOMPARE(wav.areaWaveImage(0), before);
        wav.finish();
        QCOMPARE(wav.areaWaveImage(0), areaPicture(*wave, edited[0]));
    }
    void aPictureGoesAlongWithItsArea() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        wav.build(wave, twoAreas);
        const qint64 second = wav.areaWaveImage(1).cacheKey();
        wav.build(wave, {twoAreas[1]});
        QCOMPARE(wav.areaWaveImage(0).cacheKey(), second);
        wav.finish();
        QCOMPARE(wav.areaWaveImage(0).cacheKey(), second);
        QCOMPARE(wav.fullWaveImage(), fullPicture(*wave, {twoAreas[1]}));
    }
    void editsInARowEndInThePicturesOfTheLast() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        wav.build(wave, {});
        std::vector<WaveSegment> segments;
        for (int i = 0; i < 40; ++i) {
            segments.push_back({i * 1800, i * 1800 + 1000, QColor(i, 255 - i, 0)});
            wav.build(wave, segments);
            QCoreApplication::processEvents(); // some are under way
        }
        segments.erase(segments.begin() + 3);
        segments[7].color = QColor(1, 2, 3);
        std::swap(segments[0], segments[20]);
        wav.build(wave, segments);
        QCoreApplication::processEvents();
        wav.finish();
        QCOMPARE(wav.fullWaveImage(), fullPicture(*wave, segments));
        for (std::size_t i = 0; i < segments.size(); ++i) {
            QCOMPARE(wav.areaWaveImage(int(i)), areaPicture(*wave, segments[i]));
        }
    }
    void aNewWaveIsDrawnAtOnce() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        wav.build(ramp(72000), twoAreas);
        const auto other = ramp(60000);
        wav.build(other, {twoAreas[0]});
        QCOMPARE(wav.fullWaveImage(), fullPicture(*other, {twoAreas[0]}));
        QCOMPARE(wav.areaWaveImage(0), areaPicture(*other, twoAreas[0]));
        QVERIFY(wav.areaWaveImage(1).isNull());
    }
    void aWaveThatGoesWhileItIsDrawnLeavesNothing() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(720000);
        wav.build(wave, {});
        wav.build(wave, twoAreas);
        QCoreApplication::processEvents();
        wav.build(nullptr, {});
        QTest::qWait(10);
        QVERIFY(!wav.hasWave() && wav.fullWaveImage().isNull() && wav.areaWaveImage(0).isNull());
    }
    void anEmptyWaveIsNone() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        wav.build(ramp(72000), twoAreas);
        wav.build(ramp(0), twoAreas);
        QVERIFY(!wav.hasWave());
        QVERIFY(wav.segments().empty());
        QVERIFY(wav.wavePairs().empty());
        wav.build(ramp(72000), twoAreas);
        wav.build(nullptr, {});
        QVERIFY(!wav.hasWave());
    }
    void aWaveOfOneSampleIsAnEmptyPicture() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        wav.build(ramp(1), {});
        QVERIFY(wav.hasWave());
        QVERIFY(wav.wavePairs().empty());
        QCOMPARE(wav.fullWaveImage().pixelColor(1350, 50), QColor(43, 43, 43));
    }
};

GRAMO_TEST_MAIN(TestQWPainterWav)
#include "tst_qwpainterwav.moc"
