#include "state/vinyl.h"

#include "support/testmain.h"

#include <QTest>

namespace {
constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
} // namespace

class tst_Vinyl : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everythingIsZeroAtStart() {
        const Vinyl vinyl;
        for (const auto name : {deckA, deckB}) {
            QCOMPARE(vinyl.angle(name), 0.0);
            QCOMPARE(vinyl.deltaPosition(name), 0.0);
        }
    }

    void theDecksHavePlattersOfTheirOwn() {
        Vinyl vinyl;
        vinyl.setAngle(deckA, 10.0);
        vinyl.setAngle(deckB, 20.0);
        vinyl.setDeltaPosition(deckA, 30.0);
        vinyl.setDeltaPosition(deckB, 40.0);
        QCOMPARE(vinyl.angle(deckA), 10.0);
        QCOMPARE(vinyl.angle(deckB), 20.0);
        QCOMPARE(vinyl.deltaPosition(deckA), 30.0);
        QCOMPARE(vinyl.deltaPosition(deckB), 40.0);
    }

    void anyNameButDeckAMeansDeckB() {
        Vinyl vinyl;
        vinyl.setAngle(ModelGraph::INPUT_MASTER, 20.0);
        vinyl.setDeltaPosition(ModelGraph::INPUT_2, 40.0);
        QCOMPARE(vinyl.angle(deckB), 20.0);
        QCOMPARE(vinyl.deltaPosition(deckB), 40.0);
        QCOMPARE(vinyl.angle(deckA), 0.0);
        QCOMPARE(vinyl.deltaPosition(deckA), 0.0);
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_Vinyl)
#include "tst_vinyl.moc"
