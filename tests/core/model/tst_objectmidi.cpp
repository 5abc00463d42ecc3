#include "model/objectmidi.h"

#include "support/testmain.h"

#include <QTest>
#include <QTime>
#include <QVariant>

using namespace Qt::StringLiterals;

class tst_ObjectMidi : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aNewReadingStandsInTheMiddle() {
        const ObjectMidi midi;
        QCOMPARE(midi.channel(), 0);
        QCOMPARE(midi.controller(), 0);
        QCOMPARE(midi.kind(), 0);
        QVERIFY(midi.name().isEmpty());
        QCOMPARE(midi.crossFaderLeft(), 0);
        QCOMPARE(midi.crossFaderRight(), 127);
        QCOMPARE(midi.value(), 63);
        QCOMPARE(midi.crossFader(), ModelCrossFader::MIDDLE);
    }

    void channelControllerAndKindAreCarriedAlong() {
        const ObjectMidi midi(15, 127, 42);
        QCOMPARE(midi.channel(), 15);
        QCOMPARE(midi.controller(), 127);
        QCOMPARE(midi.kind(), 42);
    }

    void theTimeIsMillisecondsSinceMidnightAtConstruction() {
        const int before = QTime::currentTime().msecsSinceStartOfDay();
        const ObjectMidi midi;
        const int after = QTime::currentTime().msecsSinceStartOfDay();
        QVERIFY(before <= after ? before <= midi.time() && midi.time() <= after
                                : midi.time() >= before || midi.time() <= after);
    }

    void theZoneFollowsTheLimits_data() {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("right");
        QTest::addColumn<int>("value");
        QTest::addColumn<ModelCrossFader::EnumCrossFader>("zone");
        QTest::newRow("at the right limit") << 0 << 127 << 127 << ModelCrossFader::RIGHT;
        QTest::newRow("at the left limit") << 0 << 127 << 0 << ModelCrossFader::LEFT;
        QTest::newRow("just inside the right limit") << 0 << 127 << 126 << ModelCrossFader::MIDDLE;
        QTest::newRow("just inside the left limit") << 0 << 127 << 1 << ModelCrossFader::MIDDLE;
        QTest::newRow("above the right limit") << 5 << 120 << 125 << ModelCrossFader::RIGHT;
        QTest::newRow("below the left limit") << 5 << 120 << 3 << ModelCrossFader::LEFT;
        QTest::newRow("equal limits, below") << 64 << 64 << 63 << ModelCrossFader::LEFT;
        QTest::newRow("equal limits, at") << 64 << 64 << 64 << ModelCrossFader::RIGHT;
        QTest::newRow("crossed limits, between") << 100 << 20 << 60 << ModelCrossFader::RIGHT;
        QTest::newRow("crossed limits, below both") << 100 << 20 << 19 << ModelCrossFader::LEFT;
    }
    void theZoneFollowsTheLimits() {
        QFETCH(int, left);
        QFETCH(int, right);
        QFETCH(int, value);
        ObjectMidi midi;
        midi.setCrossFaderLeft(left);
        midi.setCrossFaderRight(right);
        midi.setValue(value);
        QTEST(midi.crossFader(), "zone");
    }

    void crossedLimitsNeverGiveTheMiddle() {
        ObjectMidi midi;
        midi.setCrossFaderLeft(90);
        midi.setCrossFaderRight(30);
        for (int value = 0; value <= 127; ++value) {
            midi.setValue(value);
            QCOMPARE(midi.crossFader(), value >= 30 ? ModelCrossFader::RIGHT : ModelCrossFader::LEFT);
        }
    }

    void aReadingTravelsByValue() {
        ObjectMidi midi(3, 8);
        midi.setName(u"XFader"_s);
        midi.setValue(99);
        const auto arrived = QVariant::fromValue(midi).value<ObjectMidi>();
        QCOMPARE(arrived.name(), u"XFader"_s);
        QCOMPARE(arrived.channel(), 3);
        QCOMPARE(arrived.controller(), 8);
        QCOMPARE(arrived.value(), 99);
        QCOMPARE(arrived.time(), midi.time());
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_ObjectMidi)
#include "tst_objectmidi.moc"
