#include "phrasing/phrasingpalette.h"

#include "support/testmain.h"

#include <QTest>

class tst_PhrasingPalette : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theTwentyEightColoursInTheirOrder() {
        // clang-format off
        const QList<QColor> first16 = {
            {208, 0, 24}, {254, 194, 0}, {1, 194, 193}, {255, 123, 0},
            {208, 0, 24}, {220, 64, 82}, {232, 128, 139},
            {254, 194, 0}, {254, 209, 64}, {255, 225, 128},
            {1, 194, 193}, {65, 209, 209}, {128, 225, 224},
            {255, 123, 0}, {255, 156, 64}, {255, 189, 128},
        };
        // clang-format on
        const QList<QColor> palette = phrasingPalette();
        QCOMPARE(palette.size(), 28);
        QCOMPARE(palette.first(16), first16);
        QCOMPARE(palette.sliced(16), first16.sliced(4));
    }

    void allAreOpaque() {
        for (const QColor& color : phrasingPalette()) {
            QVERIFY(color.isValid());
            QCOMPARE(color.alpha(), 255);
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_PhrasingPalette)
#include "tst_phrasingpalette.moc"
