// An hour of two decks through the driven callback, down to the files: 345,600,000 samples a deck, beyond
// what the size field of a WAV header can tell in 16-bit samples.

#include "support/driventake.h"

#include "support/testmain.h"

#include <QTest>

class TestHourTake : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLostAndTheFilesAreComplete() {
        DrivenTake take(3600);
        take.play();
        take.tellDurations();
        take.checkStores();
        take.checkWaves();
        take.checkCurves();
    }
};

GRAMO_TEST_GUILESS_MAIN(TestHourTake)

#include "tst_hourtake_long.moc"
