#include "painter/axislabels.h"

#include "support/testmain.h"

#include <QTest>

namespace {

constexpr double widget = 1200.0;

} // namespace

class TestAxisLabels : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aTextStandsInTheMiddleAboutItsPlace() {
        QCOMPARE(spanWithin(600.0, 20.0, widget), (LabelSpan{590.0, 610.0}));
        QCOMPARE(spanWithin(13.0, 20.0, widget), (LabelSpan{3.0, 23.0}));
        QCOMPARE(spanWithin(1187.0, 20.0, widget), (LabelSpan{1177.0, 1197.0}));
    }
    void anEdgeMovesATextInsteadOfCuttingIt() {
        for (const double center : {1188.0, 1199.0, 1200.0, 1300.0}) {
            QCOMPARE(spanWithin(center, 20.0, widget), (LabelSpan{1177.0, 1197.0}));
        }
        for (const double center : {12.0, 0.0, -50.0}) {
            QCOMPARE(spanWithin(center, 20.0, widget), (LabelSpan{3.0, 23.0}));
        }
    }
    void aTextWiderThanTheWidgetKeepsItsStart() {
        QCOMPARE(spanWithin(10.0, 100.0, 40.0), (LabelSpan{3.0, 103.0}));
    }

    void whatComesFirstHasItsPlace() {
        LabelRow row;
        QVERIFY(row.take({100.0, 130.0}));
        QVERIFY(!row.take({110.0, 120.0}));
        QVERIFY(!row.take({90.0, 140.0}));
        QVERIFY(!row.take({90.0, 101.0}));
        QVERIFY(!row.take({129.0, 150.0}));
        QVERIFY(row.take({10.0, 30.0}));
        QVERIFY(!row.take({20.0, 40.0}));
    }
    void neighboursKeepAGap() {
        LabelRow row;
        QVERIFY(row.take({100.0, 130.0}));
        QVERIFY(!row.take({132.9, 140.0}));
        QVERIFY(!row.take({80.0, 97.1}));
        QVERIFY(row.take({133.0, 140.0}));
        QVERIFY(row.take({80.0, 97.0}));
    }
    void whatHadNoPlaceKeepsNobodyOff() {
        LabelRow row;
        QVERIFY(row.take({100.0, 130.0}));
        QVERIFY(!row.take({125.0, 200.0}));
        QVERIFY(row.take({150.0, 170.0}));
    }

    void asManyLabelsAsDontTouch() {
        QCOMPARE(labelStride(42.5, 13.0), 1);
        QCOMPARE(labelStride(13.0, 13.0), 1);
        QCOMPARE(labelStride(12.9, 13.0), 2);
        QCOMPARE(labelStride(6.5, 13.0), 2);
        QCOMPARE(labelStride(6.4, 13.0), 5);
        QCOMPARE(labelStride(2.6, 13.0), 5);
        QCOMPARE(labelStride(2.5, 13.0), 10);
        QCOMPARE(labelStride(0.0, 13.0), 10);
    }
};

GRAMO_TEST_APPLESS_MAIN(TestAxisLabels)
#include "tst_axislabels.moc"
