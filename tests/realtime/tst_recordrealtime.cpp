// The synthetic record is rendered on the sound server's thread: no call of it may ask for memory.

#include "countedcalls.h"
#include "support/testmain.h"
#include "syntheticrecord.h"

#include <QTest>

#include <string>
#include <vector>

class TestRecordRealtime : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void renderingAllocatesNothing() {
        if (const char* reason = CountedCalls::callsUncounted()) {
            QSKIP(reason);
        }
        RecordOptions everything;
        everything.noisePercent = 2.0;
        everything.humLevel = 0.01;
        everything.skewDegrees = 5.0;
        everything.dustPerSecond = 10.0;
        everything.gain = 1.5;
        for (const std::string& name : Motion::patternNames()) {
            const SyntheticRecord record(createTimecodeDefinitions()[1], 48000.0,
                                         Motion(*Motion::patternFromName(name)), everything);
            std::vector<float> left(64);
            std::vector<float> right(64);
            int crossfaders = 0;
            CountedCalls::start();
            for (std::uint64_t i = 0; i < 64000; i += 64) {
                record.render(i, 64, left.data(), right.data());
                crossfaders += record.truth(i).crossfader;
            }
            const CountedCalls::Counts counts = CountedCalls::stop();
            QCOMPARE(counts.allocations, std::uint64_t{0});
            QCOMPARE(counts.frees, std::uint64_t{0});
            QVERIFY(crossfaders > 0);
        }
        // The counter counts.
        CountedCalls::start();
        ::operator delete(::operator new(16));
        QCOMPARE(CountedCalls::stop().allocations, std::uint64_t{1});
    }
};

GRAMO_TEST_APPLESS_MAIN(TestRecordRealtime)
#include "tst_recordrealtime.moc"
