// A minute of two decks through the driven callback, down to the files.

#include "support/driventake.h"

#include "support/testmain.h"

#include <QTest>

class TestMinuteTake : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsLostAndTheFilesAreComplete() {
        DrivenTake take(60);
        take.play();
        take.tellDurations();
        take.checkStores();
        take.checkWaves();
        take.checkCurves();
    }
};

GRAMO_TEST_GUILESS_MAIN(TestMinuteTake)

#include "tst_minutetake.moc"
