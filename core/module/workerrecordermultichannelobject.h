#pragma once

#include "inputcallback.h"
#include "model/modelgraph.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <memory>

class AudioNotifier;
class CurvePointRing;
class CurvePointStore;
class InputStream;
class ManageWAV;
class QSample;
class ReceiveTimecodeDVSObject;

/// Owns one input stream and what hangs on it: the decoders of both decks and, while recording, the takes of
/// master, deck A and deck B. It serves only the inputs that `load` hands to it. What runs on the stream's
/// thread is in inputcallback.cpp. GUI thread.
class WorkerRecorderMultiChannelObject : public QObject {
    Q_OBJECT
public:
    static constexpr int housekeepingInterval = 200; ///< ms
    static constexpr int lostAfter = 2000;           ///< ms without a buffer

    WorkerRecorderMultiChannelObject(CurvePointRing& ringA, CurvePointStore& pointsA, CurvePointRing& ringB,
                                     CurvePointStore& pointsB, QObject* parent = nullptr);
    ~WorkerRecorderMultiChannelObject() override;

    ReceiveTimecodeDVSObject* decoderDeckA() const { return m_deckA.decoder.get(); }
    ReceiveTimecodeDVSObject* decoderDeckB() const { return m_deckB.decoder.get(); }
    AudioNotifier* notifier() const { return m_notifier.get(); }
    bool isOpen() const;
    bool isRunning() const { return m_running; }
    /// Samples and points that had no room in this session.
    std::uint64_t overflows() const;
    /// The state of the stream's callback, for tests that drive it; null when closed.
    InputCallbackState* callbackState() const { return m_state.get(); }

Q_SIGNALS:
    void s_UpdateBPM_DeckA();
    void s_UpdateBPM_DeckB();
    /// So many samples and points had no room in this session; told when the number grows.
    void s_Overflow(quint64 lost);
    /// Nothing comes from the device of input `name`: its stream couldn't be opened or started, or has
    /// brought no buffer yet within lostAfter. False when one comes after all.
    void s_SilentInput(ModelGraph::EnumGraph name, bool silent);
    /// The take couldn't be written, or not whole, to this file.
    void s_NotWritten(QString path);
    /// The stream has run and calls no more: the sound server is gone or stands still. Not sent for a stream
    /// that nothing reads: its master is reported silent.
    void s_StreamLost();

public Q_SLOTS:
    /// Opens the stream on the device of the sample that `name` chooses. A null sample isn't served.
    void load(ModelGraph::EnumGraph name, QSample* master, QSample* deckA, QSample* deckB);
    /// Starts the stream.
    void record();
    /// Ends the input: from now on nothing changes the takes, nor the curves of the decks that it feeds. What
    /// is small is written between this and `stop`.
    void halt();
    /// Stops and closes the stream and writes the takes of the inputs that have delivered something. Never
    /// waits for a lost server longer than a deadline, and then only after the takes have been written.
    void stop();
    /// Forgets the samples and takes; nothing is freed. Not while the stream is open.
    void init();
    void timecodeInitialise();
    /// Builds the chosen timecode's tables ahead of timecodeInitialise.
    void timecodePrepare();
    /// Restarts the deck at a new beat grid. While this stream feeds the deck, its callback does that at the
    /// next buffer; a deck that another recorder feeds is left alone.
    void timecodeUpdateBPM_DeckA();
    void timecodeUpdateBPM_DeckB();

private:
    struct Group {
        ModelGraph::EnumGraph name;
        std::unique_ptr<ReceiveTimecodeDVSObject> decoder;
        QSample* sample = nullptr;
        ManageWAV* take = nullptr;
    };
    std::array<Group*, 3> groups() { return {&m_master, &m_deckA, &m_deckB}; }
    static void prepareGroup(InputGroup& target, Group& group, bool recording);
    /// Gives the fed decks to this stream's callback, or takes them back.
    void setFeeding(bool feeding);
    bool restart(Group& group, InputGroup* target);
    bool callbacksMissing() const;
    /// Something is done with what the stream brings: it feeds a deck or is recorded.
    bool isRead() const;
    /// For each input that is served.
    void tellSilent(bool silent);
    void writeTakes();
    void housekeeping();

    std::unique_ptr<AudioNotifier> m_notifier;
    std::shared_ptr<InputCallbackState> m_state;
    std::unique_ptr<InputStream> m_stream;
    ModelGraph::EnumGraph m_name = ModelGraph::NOT_USED;
    QSample* m_mainSample = nullptr;
    Group m_deckA;
    Group m_deckB;
    Group m_master;
    bool m_running = false;
    bool m_silent = false; ///< what s_SilentInput has said last
    QTimer m_housekeeping;
    std::uint64_t m_buffersSeen = 0;
    std::uint64_t m_overflowsTold = 0;
    qint64 m_lastBufferMs = 0; ///< steady clock, when m_buffersSeen last changed
};
