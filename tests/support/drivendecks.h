#pragma once
// One input stream with two decks and a master, driven by hand: the program's own callback, decoders, stores
// and takes, without a sound card.

#include "curve/curvepointring.h"
#include "curve/curvepointstore.h"
#include "curve/qcurve.h"
#include "module/audionotifier.h"
#include "module/inputcallback.h"
#include "module/managewav.h"
#include "module/receivetimecodedvsobject.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "support/drivensetup.h"

#include <QTemporaryDir>

/// The stream. The constructor does what the recorder's slots do up to the start of the stream: afterwards
/// the state is open and the gate of Mode decides. Made, asked and destroyed on the GUI thread.
class DrivenDecks {
public:
    explicit DrivenDecks(const DrivenSetup& setup = {})
        : m_shared((dataFolder(), Singleton::instance()))
        , m_before{m_shared.performance()->sample(ModelGraph::INPUT_DECKA),
                   m_shared.performance()->sample(ModelGraph::INPUT_DECKB),
                   m_shared.performance()->sampleOutput()}
        , sampleA(ModelGraph::INPUT_DECKA, 0, QStringLiteral("driven"), setup.rate, int(setup.channels),
                  int(setup.pairDeckA))
        , sampleB(ModelGraph::INPUT_DECKB, 0, QStringLiteral("driven"), setup.rate, int(setup.channels),
                  int(setup.pairDeckB))
        , output(ModelGraph::OUTPUT_MASTER, 0, QString(), setup.outputRate, 2, 0, 0, 0)
        , curveA(ModelGraph::INPUT_DECKA, pointsA)
        , curveB(ModelGraph::INPUT_DECKB, pointsB)
        , deckA(ModelGraph::INPUT_DECKA, ringA, pointsA)
        , deckB(ModelGraph::INPUT_DECKB, ringB, pointsB) {
        setSamples(&sampleA, &sampleB, &output);
        m_shared.performance()->setOutputBuffer(setup.outputBuffer);
        m_shared.setting()->setTimecode(setup.timecode);
        deckA.initialise();
        deckB.initialise();
        state.mode = m_shared.mode();
        state.notifier = &notifier;
        state.channels = setup.channels;
        prepareGroup(state.master, setup.pairMaster, setup.recording ? &takeMaster : nullptr, nullptr);
        prepareGroup(state.deckA, setup.pairDeckA, setup.recording ? &takeA : nullptr, &deckA);
        prepareGroup(state.deckB, setup.pairDeckB, setup.recording ? &takeB : nullptr, &deckB);
        deckA.setFed(true);
        deckB.setFed(true);
        if (setup.recording) {
            m_shared.mode()->modeRecorder_on();
        }
        m_shared.mode()->modeStartSynchronized_on();
        state.open.store(true, std::memory_order_release);
    }
    /// Not before the thread that drives has ended.
    ~DrivenDecks() {
        stop();
        setSamples(m_before.deckA, m_before.deckB, m_before.output);
        m_shared.mode()->modeRecorder_off();
        m_shared.mode()->modeStartSynchronized_off();
    }

    /// Takes the decks back from the callback, as the end of a session does.
    void stop() {
        state.open.store(false, std::memory_order_release);
        deckA.setFed(false);
        deckB.setFed(false);
    }
    /// Memory ahead of the callback, as the recorder's timer asks for it.
    void housekeeping() {
        for (ManageWAV* take : {&takeMaster, &takeA, &takeB}) {
            take->prepare();
        }
        deckA.prepare();
        deckB.prepare();
        notifier.deliver();
    }
    /// Samples and points that found no room.
    std::uint64_t overflows() const {
        return takeMaster.samples().overflows() + takeA.samples().overflows() + takeB.samples().overflows() +
               pointsA.overflows() + pointsB.overflows();
    }

private:
    /// The settings of this process lie in a folder of their own.
    static const QTemporaryDir& dataFolder() {
        static const QTemporaryDir folder;
        static const bool used = (useDataFolder(folder.path()), true);
        static_cast<void>(used);
        return folder;
    }
    struct Samples {
        QSample* deckA;
        QSample* deckB;
        QSample* output;
    };
    void setSamples(QSample* a, QSample* b, QSample* out) const {
        m_shared.performance()->setSample(ModelGraph::INPUT_DECKA, a, false);
        m_shared.performance()->setSample(ModelGraph::INPUT_DECKB, b, false);
        m_shared.performance()->setSampleOutput(out);
    }
    static void prepareGroup(InputGroup& group, std::size_t pair, ManageWAV* take,
                             ReceiveTimecodeDVSObject* decoder) {
        group.served = true;
        group.left = pair * 2;
        group.take = take;
        group.decoder = decoder;
    }
    const Singleton& m_shared;
    const Samples m_before;

public:
    QSample sampleA;
    QSample sampleB;
    QSample output;
    CurvePointRing ringA;
    CurvePointRing ringB;
    CurvePointStore pointsA;
    CurvePointStore pointsB;
    QCurve curveA;
    QCurve curveB;
    ReceiveTimecodeDVSObject deckA;
    ReceiveTimecodeDVSObject deckB;
    ManageWAV takeMaster;
    ManageWAV takeA;
    ManageWAV takeB;
    AudioNotifier notifier;
    InputCallbackState state; ///< for processInput
};
