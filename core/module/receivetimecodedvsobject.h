#pragma once

#include "deckstate.h"
#include "model/constants.h"

#include <QObject>

class AudioNotifier;
class Performance;
class Setting;

/// Turns one deck's stereo frames into curve points: it feeds the timecoder, tracks speed and position,
/// integrates the distance and, every `curveStep` frames, publishes a point to the deck's ring and store.
/// Slots run on the GUI thread and only while no frames are fed, unless they say otherwise.
class ReceiveTimecodeDVSObject : public QObject {
    Q_OBJECT
public:
    static constexpr int latencyInterval = 500; ///< ms between two s_ringBufferLatencyMs

    /// `ring` and `points` belong to the controller and outlive the decoder. Makes room for the first five
    /// million points.
    ReceiveTimecodeDVSObject(ModelGraph::EnumGraph name, CurvePointRing& ring, CurvePointStore& points,
                             QObject* parent = nullptr);

    /// One frame. Only channels[0] is used: the left sample, with the right one behind it. The input
    /// callback's thread. Realtime-safe.
    void executeRT(std::int16_t* channels[Constant::Audio::STEREO], AudioNotifier& notifier);
    /// updateBPM as the callback carries it out, the emptying of the curve included. Realtime-safe.
    void restartRT();

    /// Says whether a stream feeds this decoder: its deck's store is then the callback's.
    void setFed(bool fed);
    bool isFed() const { return m_fed; }
    /// True while some stream's callback fills the deck's store.
    bool isDeckLive() const;
    /// Memory ahead of the callback. A few times a second while fed.
    void prepare();

    /// The callback's state, for tests and displays.
    const DeckState& state() const { return m_state; }
    const TimecodeDefinition& definition() const { return m_def; }

Q_SIGNALS:
    /// Delay of the ring in ms at one frame a point, highest fill, capacity. From the decoder that is fed.
    void s_ringBufferLatencyMs(double latencyMs, size_t maxFill, size_t capacity);

public Q_SLOTS:
    /// Re-reads the settings and selects the timecode. A name that is no timecode ends the process.
    void initialise();
    /// Builds the lookup table of the chosen timecode, so that initialise finds it ready.
    void prepareTimecode();
    /// Restarts the deck's clock at a new beat grid.
    void updateBPM();

private:
    void clearTracking();
    void publishPoint(int code, double pitch);

    DeckState m_state;
    Performance& m_performance;
    Setting& m_setting;
    TimecodeDefinitionList m_definitions;
    TimecodeDefinition m_def;
    bool m_fed = false;
};
