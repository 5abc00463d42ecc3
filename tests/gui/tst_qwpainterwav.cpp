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
    // A file may name any number of areas: their pictures are made as they are shown.
    void ofThousandsOfAreasEachHasItsPicture() {
        QWPainterWav wav(ModelGraph::INPUT_DECKA);
        const auto wave = ramp(72000);
        std::vector<WaveSegment> segments;
        for (int i = 0; i < 7000; ++i) {
            segments.push_back({i * 10, i * 10 + 10, QColor(i % 256, 0, 0)});
        }
        wav.build(wave, segments);
        for (const int i : {0, 63, 64, 65, 6999, 64}) {
            const WaveSegment& segment = segments[std::size_t(i)];
            QCOMPARE(wav.areaWaveImage(i), wavePicture(wave->samples(0), segment.first, segment.end,
                                                       waveFactor(*wave), {}, segment.color));
        }
        QVERIFY(wav.areaWaveImage(7000).isNull());
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
