#include "state/midi.h"

#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_Midi : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theFaderStandsInTheMiddleAtStart() {
        const Midi midi;
        QCOMPARE(midi.crossFader(), ModelCrossFader::MIDDLE);
        QCOMPARE(midi.object().value(), 63);
        QCOMPARE(midi.object().crossFader(), midi.crossFader());
    }

    void aReadingIsTakenAndAnnounced() {
        Midi midi;
        int announced = 0;
        auto zone = ModelCrossFader::MIDDLE;
        connect(&midi, &Midi::crossFaderChanged, this, [&](const ObjectMidi& reading) {
            ++announced;
            zone = midi.crossFader(); // stands already
            QCOMPARE(reading.name(), u"XFader"_s);
        });
        ObjectMidi reading(2, 8);
        reading.setName(u"XFader"_s);
        for (const auto& [value, expected] :
             {std::pair{0, ModelCrossFader::LEFT}, std::pair{127, ModelCrossFader::RIGHT},
              std::pair{64, ModelCrossFader::MIDDLE}}) {
            reading.setValue(value);
            midi.setObject(reading);
            QCOMPARE(midi.crossFader(), expected);
            QCOMPARE(zone, expected);
            QCOMPARE(midi.object().value(), value);
            QCOMPARE(midi.object().controller(), 8);
        }
        QCOMPARE(announced, 3);
        midi.setObject(reading);
        QCOMPARE(announced, 4); // also when nothing changed
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Midi)
#include "tst_midi.moc"
