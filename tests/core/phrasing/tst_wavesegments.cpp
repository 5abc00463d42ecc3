#include "phrasing/wavesegments.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QTest>

#include <limits>

using Segments = std::vector<WaveSegment>;

class tst_WaveSegments : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void withoutAreasThereAreNoSegments() { QVERIFY(waveSegments({}, 48000).empty()); }

    void theWholeTurnStandsForTheWholeSample() {
        QCOMPARE(waveSegments({area(0.0, 360.0, Qt::red)}, 48001), (Segments{{0, 48001, Qt::red}}));
    }

    void theSegmentsStandInTheOrderOfTheAreasInTheirColours() {
        QCOMPARE(waveSegments({area(180.0, 270.0, Qt::red), area(0.0, 90.0, Qt::blue)}, 4000),
                 (Segments{{2000, 3000, Qt::red}, {0, 1000, Qt::blue}}));
    }

    void placesAreTruncatedTowardsZero() {
        // 1 degree of 1000 samples: 2.77 samples.
        QCOMPARE(waveSegments({area(1.0, 2.0)}, 1000), (Segments{{2, 5, QColor(1, 2, 3)}}));
        QCOMPARE(waveSegments({area(-1.0, 2.0)}, 1000), (Segments{{-2, 5, QColor(1, 2, 3)}}));
    }

    void anAreaThatStartsBehindItsEndGivesASegmentOfThatKind() {
        QCOMPARE(waveSegments({area(270.0, 90.0)}, 4000), (Segments{{3000, 1000, QColor(1, 2, 3)}}));
    }

    void anEmptySampleGivesEmptySegments() {
        QCOMPARE(waveSegments({area(90.0, 180.0)}, 0), (Segments{{0, 0, QColor(1, 2, 3)}}));
    }

    void whatNoNumberOf32BitsHoldsIsHeldAtTheEnd() {
        constexpr std::int32_t last = std::numeric_limits<std::int32_t>::max();
        QCOMPARE(waveSegments({area(90.0, 360.0)}, std::size_t{1} << 40).front().end, last);
        QCOMPARE(waveSegments({area(0.0, 1e300)}, 1000).front().end, last);
    }

    void touchingAreasGiveTouchingSegments() {
        QRandomGenerator random(11);
        for (int round = 0; round < 500; ++round) {
            const double cut = random.generateDouble() * 360.0;
            const auto samples = std::size_t(random.bounded(10'000'000));
            const Segments segments = waveSegments({area(0.0, cut), area(cut, 360.0)}, samples);
            QCOMPARE(segments[0].first, 0);
            QCOMPARE(segments[0].end, segments[1].first);
            QCOMPARE(segments[1].end, std::int32_t(samples));
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_WaveSegments)
#include "tst_wavesegments.moc"
