#include "state/performance.h"

#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Performance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everythingIsZeroAndEverySampleADefaultOneAtStart() {
        const Performance performance;
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKA), 0.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKB), 0.0);
        QCOMPARE(performance.outputBuffer(), 0.0);
        QCOMPARE(performance.displayInterval(), 0.0);
        QCOMPARE(performance.outputBufferSelected(), 0.0);
        const QSample* deckA = performance.sample(ModelGraph::INPUT_DECKA);
        const QSample* deckB = performance.sample(ModelGraph::INPUT_DECKB);
        const QSample* output = performance.sampleOutput();
        QCOMPARE(deckA->name(), ModelGraph::INPUT_DECKA);
        QCOMPARE(deckB->name(), ModelGraph::INPUT_DECKB);
        QCOMPARE(output->name(), ModelGraph::OUTPUT_MASTER);
        for (const QSample* sample : {deckA, deckB, output}) {
            QVERIFY(sample->deviceName().isEmpty());
            QCOMPARE(sample->sampleRate(), 48000.0);
        }
    }

    void eachDeckHasItsOwnInputBufferWithoutASignal() {
        Performance performance;
        QSignalSpy input(&performance, &Performance::s_InputSample);
        QSignalSpy output(&performance, &Performance::s_OutputSample);
        QSignalSpy display(&performance, &Performance::signalDisplayFrequency);
        performance.setInputBuffer(ModelGraph::INPUT_DECKA, 64.0);
        performance.setInputBuffer(ModelGraph::INPUT_DECKB, 256.0);
        performance.setOutputBuffer(512.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKA), 64.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKB), 256.0);
        QCOMPARE(performance.outputBuffer(), 512.0);
        QCOMPARE(input.count() + output.count() + display.count(), 0);
    }

    void anyNameButDeckAMeansTheSecondEntry() {
        Performance performance;
        performance.setInputBuffer(ModelGraph::INPUT_MASTER, 128.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKB), 128.0);
        QCOMPARE(performance.inputBuffer(ModelGraph::INPUT_DECKA), 0.0);
        QCOMPARE(performance.sample(ModelGraph::INPUT_MASTER), performance.sample(ModelGraph::INPUT_DECKB));
    }

    void theDisplayIntervalIsTheInverseOfTheFrequencyAndIsAnnounced_data() {
        QTest::addColumn<double>("frequency");
        QTest::addColumn<int>("timer");
        QTest::newRow("30") << 30.0 << 33;
        QTest::newRow("60") << 60.0 << 16;
        QTest::newRow("120") << 120.0 << 8;
    }
    void theDisplayIntervalIsTheInverseOfTheFrequencyAndIsAnnounced() {
        QFETCH(double, frequency);
        Performance performance;
        QSignalSpy display(&performance, &Performance::signalDisplayFrequency);
        performance.setDisplayFrequency(frequency);
        QCOMPARE(performance.displayInterval(), 1.0 / frequency * 1000.0);
        QTEST(int(performance.displayInterval()), "timer");
        QCOMPARE(display.count(), 1);
        performance.setDisplayFrequency(frequency);
        QCOMPARE(display.count(), 2);
    }

    void aSampleForDeckBLeavesDeckAAlone() {
        Performance performance;
        QSample* const deckA = performance.sample(ModelGraph::INPUT_DECKA);
        auto* sample = lastingSample(QSample(ModelGraph::INPUT_DECKB, 1, u"x"_s, 44100.0, 2, 0));
        performance.setSample(ModelGraph::INPUT_DECKB, sample, false);
        QCOMPARE(performance.sample(ModelGraph::INPUT_DECKB), sample);
        QCOMPARE(performance.sample(ModelGraph::INPUT_DECKA), deckA);
    }

    void aSampleIsAnnouncedWhereThatIsAskedFor() {
        Performance performance;
        QSignalSpy input(&performance, &Performance::s_InputSample);
        performance.setSample(ModelGraph::INPUT_DECKA, lastingSample(QSample(ModelGraph::INPUT_DECKA)),
                              false);
        QCOMPARE(input.count(), 0);
        performance.setSample(ModelGraph::INPUT_DECKA, lastingSample(QSample(ModelGraph::INPUT_DECKA)), true);
        performance.setSample(ModelGraph::INPUT_DECKB, lastingSample(QSample(ModelGraph::INPUT_DECKB)), true);
        QCOMPARE(input.count(), 2);
        QCOMPARE(input.at(0).at(0).value<ModelGraph::EnumGraph>(), ModelGraph::INPUT_DECKA);
        QCOMPARE(input.at(1).at(0).value<ModelGraph::EnumGraph>(), ModelGraph::INPUT_DECKB);
    }

    void theSampleStandsWhenItIsAnnounced() {
        Performance performance;
        auto* sample = lastingSample(QSample(ModelGraph::INPUT_DECKA, 1, u"x"_s, 44100.0, 2, 0));
        const QSample* seen = nullptr;
        connect(&performance, &Performance::s_InputSample, this,
                [&](ModelGraph::EnumGraph name) { seen = performance.sample(name); });
        performance.setSample(ModelGraph::INPUT_DECKA, sample, true);
        QCOMPARE(seen, sample);
    }

    void anOutputSampleKeepsTheBufferOfThatMoment() {
        Performance performance;
        QSignalSpy output(&performance, &Performance::s_OutputSample);
        performance.setOutputBuffer(256.0);
        QCOMPARE(performance.outputBufferSelected(), 0.0);
        auto* sample = lastingSample(QSample(ModelGraph::OUTPUT_MASTER, 2, u"x"_s, 44100.0, 2, 0, 0, 0));
        performance.setSampleOutput(sample);
        QCOMPARE(performance.sampleOutput(), sample);
        QCOMPARE(performance.outputBufferSelected(), 256.0);
        QCOMPARE(output.count(), 1);
        performance.setOutputBuffer(64.0);
        QCOMPARE(performance.outputBufferSelected(), 256.0);
        performance.setSampleOutput(nullptr);
        QCOMPARE(performance.sampleOutput(), nullptr);
        QCOMPARE(performance.outputBufferSelected(), 64.0);
        QCOMPARE(output.count(), 2);
    }

    void aReplacedSampleIsNotFreed() {
        Performance performance;
        QSample deckA(ModelGraph::INPUT_DECKA, 1, u"deck A"_s, 44100.0, 2,
                      0); // on the stack: a free would crash
        QSample output(ModelGraph::OUTPUT_MASTER, 1, u"output"_s, 44100.0, 2, 0, 0, 0);
        performance.setSample(ModelGraph::INPUT_DECKA, &deckA, false);
        performance.setSample(ModelGraph::INPUT_DECKA, lastingSample(QSample(ModelGraph::INPUT_DECKA)),
                              false);
        performance.setSampleOutput(&output);
        performance.setSampleOutput(lastingSample(QSample(ModelGraph::OUTPUT_MASTER)));
        QCOMPARE(deckA.deviceName(), u"deck A"_s);
        QCOMPARE(output.deviceName(), u"output"_s);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Performance)
#include "tst_performance.moc"
