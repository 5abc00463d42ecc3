#include "deviceobject.h"

#include "model/objectaudiodevice.h"
#include "model/qsample.h"
#include "state/devicecatalogue.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/portaudiosession.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "streamrouting.h"

#include <cmath>

namespace {

QSample* orDefault(QSample* sample, ModelGraph::EnumGraph name) {
    return sample != nullptr ? sample : lastingSample(QSample(name));
}

// A sample of the stored device, wherever it stands by now; null if it isn't there.
QSample* foundByName(const ObjectAudioDevice& stored, ModelGraph::EnumGraph name,
                     const std::vector<DeviceDescription>& present) {
    const int index = deviceIndexOf(present, stored.name(), stored.index(), stored.channelCount());
    if (index < 0 || stored.name().isEmpty() || stored.channelCount() < Constant::Audio::STEREO ||
        !(stored.sampleRate() > 0.0)) {
        return nullptr;
    }
    return lastingSample(QSample(name, index, stored.name(), std::trunc(stored.sampleRate()),
                                 stored.channelCount(), stored.channelFirst()));
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

QSample* DeviceObject::deckSample(ModelGraph::EnumGraph name, const ObjectAudioDevice& stored,
                                  const std::vector<DeviceDescription>& present) {
    Singleton& shared = Singleton::instance();
    QSample* sample = shared.performance()->sample(name);
    if (!sample->deviceName().isEmpty()) {
        return sample;
    }
    QSample* found = foundByName(stored, name, present);
    if (found == nullptr) {
        return sample;
    }
    if (name == ModelGraph::INPUT_DECKA) {
        shared.pathFile()->setFileDeckA(found->fileName());
    } else {
        shared.pathFile()->setFileDeckB(found->fileName());
    }
    shared.performance()->setSample(name, found, true);
    return found;
}

QSample* DeviceObject::masterSample(const std::vector<DeviceDescription>& present) {
    Singleton& shared = Singleton::instance();
    QSample* sample = shared.sampleInputMaster();
    if (sample == nullptr) {
        sample = foundByName(*shared.setting()->inputMaster(), ModelGraph::INPUT_MASTER, present);
        if (sample != nullptr) {
            shared.pathFile()->setFileMaster(sample->fileName());
        }
    }
    return sample;
}

int DeviceObject::placeOf(const QSample* sample, ModelGraph::EnumGraph name, const ObjectAudioDevice& stored,
                          const std::vector<DeviceDescription>& present) {
    const bool none = sample == nullptr || sample->deviceName().isEmpty();
    if (PortAudioSession::blocked()) {
        return none ? -1 : sample->deviceIndex(); // the list isn't to be had, and nothing will open
    }
    const int index =
        none ? -1
             : deviceIndexOf(present, sample->deviceName(), sample->deviceIndex(), sample->channelCount());
    const QString wanted = none ? stored.name() : sample->deviceName();
    const bool missed = name != ModelGraph::INPUT_MASTER || Singleton::instance().mode()->modeRecorder();
    if (index < 0 && missed && !wanted.isEmpty()) {
        Q_EMIT s_MissingDevice(name, wanted);
    }
    return index;
}

void DeviceObject::runDevices() {
    Singleton& shared = Singleton::instance();
    const PortAudioSession session; // one look at the devices for the whole start
    const std::vector<DeviceDescription> present =
        session.ok() ? listedDevices() : std::vector<DeviceDescription>{};
    const ObjectAudioDevice storedA = *shared.setting()->inputDeckA();
    const ObjectAudioDevice storedB = *shared.setting()->inputDeckB();
    const ObjectAudioDevice storedMaster = *shared.setting()->inputMaster();
    Performance& performance = *shared.performance();
    QSample* deckA = deckSample(ModelGraph::INPUT_DECKA, storedA, present);
    QSample* deckB = deckSample(ModelGraph::INPUT_DECKB, storedB, present);
    const bool recording = shared.mode()->modeRecorder();
    if (recording) {
        beginTake();
    }
    QSample* master = masterSample(present);
    const int placeA = placeOf(deckA, ModelGraph::INPUT_DECKA, storedA, present);
    const int placeB = placeOf(deckB, ModelGraph::INPUT_DECKB, storedB, present);
    const int placeMaster = placeOf(master, ModelGraph::INPUT_MASTER, storedMaster, present);
    for (const StreamRoute& route : routeStreams({placeA, placeB, placeMaster, recording})) {
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
