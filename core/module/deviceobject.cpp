#include "deviceobject.h"

#include "model/qsample.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/singleton.h"
#include "streamrouting.h"

namespace {

QSample* orDefault(QSample* sample, ModelGraph::EnumGraph name) {
    return sample != nullptr ? sample : lastingSample(QSample(name));
}

int deviceOf(const QSample* sample) {
    return sample == nullptr || sample->deviceName().isEmpty() ? -1 : sample->deviceIndex();
}

} // namespace

void DeviceObject::controllerDevices() {
    Singleton& shared = Singleton::instance();
    Performance& performance = *shared.performance();
    performance.setSample(ModelGraph::INPUT_DECKA,
                          orDefault(shared.sampleInputDeckA(), ModelGraph::INPUT_DECKA), true);
    performance.setSample(ModelGraph::INPUT_DECKB,
                          orDefault(shared.sampleInputDeckB(), ModelGraph::INPUT_DECKB), true);
    performance.setSampleOutput(orDefault(shared.sampleOutputMaster(), ModelGraph::OUTPUT_MASTER));
}

void DeviceObject::beginTake() {
    PathFile& files = *Singleton::instance().pathFile();
    if (!files.beginTake()) {
        return;
    }
    Performance& performance = *Singleton::instance().performance();
    QSample* deckA = performance.sample(ModelGraph::INPUT_DECKA);
    if (!deckA->deviceName().isEmpty()) {
        deckA->renewFileName();
        files.setFileDeckA(deckA->fileName());
    }
    QSample* deckB = performance.sample(ModelGraph::INPUT_DECKB);
    if (!deckB->deviceName().isEmpty()) {
        deckB->renewFileName();
        files.setFileDeckB(deckB->fileName());
    }
}

void DeviceObject::runDevices() {
    Singleton& shared = Singleton::instance();
    const bool recording = shared.mode()->modeRecorder();
    if (recording) {
        beginTake();
    }
    Performance& performance = *shared.performance();
    QSample* deckA = performance.sample(ModelGraph::INPUT_DECKA);
    QSample* deckB = performance.sample(ModelGraph::INPUT_DECKB);
    QSample* master = shared.sampleInputMaster();
    for (const StreamRoute& route :
         routeStreams({deviceOf(deckA), deviceOf(deckB), deviceOf(master), recording})) {
        QSample* const m = route.master ? master : nullptr;
        QSample* const a = route.deckA ? deckA : nullptr;
        QSample* const b = route.deckB ? deckB : nullptr;
        switch (route.worker) {
        case StreamRoute::All:
            Q_EMIT s_SampleInputMultiChannel_All(route.role, m, a, b);
            break;
        case StreamRoute::DeckB:
            Q_EMIT s_SampleInputMultiChannel_DeckB(route.role, m, a, b);
            break;
        case StreamRoute::Master:
            Q_EMIT s_SampleInputMultiChannel_Master(route.role, m, a, b);
            break;
        }
    }
    QSample* output = performance.sampleOutput();
    if (output != nullptr && !output->deviceName().isEmpty()) {
        Q_EMIT s_SampleOutputPlayBack(output);
    }
}
