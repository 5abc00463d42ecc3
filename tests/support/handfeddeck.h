#pragma once
// A deck with its ring and its store, fed frame by frame, and the settings it is played with.

#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "model/objectmidi.h"
#include "module/audionotifier.h"
#include "module/receivetimecodedvsobject.h"
#include "state/midi.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/time.h"
#include "state/timecode.h"
#include "state/vinyl.h"
#include "support/decoderrun.h"

#include <QString>

struct HandFedDeck {
    ModelGraph::EnumGraph name;
    CurvePointRing ring;
    CurvePointStore points;
    AudioNotifier notifier;
    ReceiveTimecodeDVSObject decoder;

    explicit HandFedDeck(ModelGraph::EnumGraph deck = ModelGraph::INPUT_DECKA)
        : name(deck), decoder(deck, ring, points) {
        Singleton::instance().time()->clearFrameCounter(deck);
    }
    /// The callback's state, for tests that bring it where the program's own resets don't. Not while a frame
    /// is fed.
    DeckState& state() { return const_cast<DeckState&>(decoder.state()); }

    void frame(StereoFrame f) {
        std::int16_t pair[2] = {f.left, f.right};
        std::int16_t* channels[2] = {&pair[0], nullptr}; // the second one isn't looked at
        decoder.executeRT(channels, notifier);
    }
    void play(const SyntheticRecord& record, std::uint64_t from, std::uint64_t count) {
        for (std::uint64_t i = from; i < from + count; ++i) {
            frame(record.frame(i));
        }
    }
};

inline const TimecodeDefinition& rowOf(const QString& name) {
    return builtRow(name.toStdString());
}

/// Frames a second of both decks and of the output, and its frames a buffer.
inline void useRates(double rate, double outputRate, double outputBuffer) {
    Performance& performance = *Singleton::instance().performance();
    const QString card = QStringLiteral("card");
    for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
        performance.setSample(deck, lastingSample(QSample(deck, 0, card, rate, 2, 0)), false);
    }
    performance.setOutputBuffer(outputBuffer);
    performance.setSampleOutput(
        lastingSample(QSample(ModelGraph::OUTPUT_MASTER, 0, card, outputRate, 2, 0, 0, 0)));
}

/// The crossfader's controller, 0 to 127.
inline void moveFader(int value) {
    ObjectMidi reading;
    reading.setValue(value);
    reading.setCrossFaderLeft(0);
    reading.setCrossFaderRight(127);
    Singleton::instance().midi()->setObject(reading);
}

/// 48000 Hz all round and a point every 96 frames; both decks without a zero mark, the fader in the middle.
inline void usePlainSettings(const QString& timecode) {
    useRates(48000.0, 48000.0, 96.0);
    Singleton& shared = Singleton::instance();
    shared.setting()->setTimecode(timecode);
    shared.setting()->setVinylDeltaPositionA(0.0);
    shared.setting()->setVinylDeltaPositionB(0.0);
    shared.mode()->modeMix_off();
    shared.mode()->modeReverse_off();
    shared.mode()->modeFullDVS_off();
    moveFader(63);
    for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
        shared.timecode()->modeTimecode_off(deck);
        shared.timecode()->resetPositionDelta(deck);
        shared.time()->clearFrameCounter(deck);
    }
}
