#pragma once

#include "model/modelgraph.h"

#include <QObject>

#include <vector>

class ObjectAudioDevice;
class QSample;
struct DeviceDescription;

/// Decides at the start of a session which recorder opens which input stream, and keeps Performance's samples
/// in step with the settings. GUI thread.
class DeviceObject : public QObject {
    Q_OBJECT
public:
    explicit DeviceObject(QObject* parent = nullptr) : QObject(parent) {}

Q_SIGNALS:
    void s_SampleInputMultiChannel_All(ModelGraph::EnumGraph name, QSample* master, QSample* deckA,
                                       QSample* deckB);
    void s_SampleInputMultiChannel_DeckB(ModelGraph::EnumGraph name, QSample* master, QSample* deckA,
                                         QSample* deckB);
    void s_SampleInputMultiChannel_Master(ModelGraph::EnumGraph name, QSample* master, QSample* deckA,
                                          QSample* deckB);
    void s_SampleOutputPlayBack(QSample* sample);
    /// At a session's start: the device that is stored for input `name` isn't there, and nothing opens for
    /// it. A master that isn't recorded isn't missed.
    void s_MissingDevice(ModelGraph::EnumGraph name, const QString& device);

public Q_SLOTS:
    /// Takes the stored devices into Performance; a missing one gives a default sample. Outside a session.
    void controllerDevices();
    /// Opens the streams of a session by announcing their samples. A stored device that wasn't there, or
    /// stood elsewhere, when it was chosen is looked for by its name once more. While recording, a session
    /// after the first gets a folder and file names of its own.
    void runDevices();

private:
    void beginTake();
    /// The deck's sample; where it has none, one of the stored device if that is there by now.
    static QSample* deckSample(ModelGraph::EnumGraph name, const ObjectAudioDevice& stored,
                               const std::vector<DeviceDescription>& present);
    /// A new one for this session, null without a device.
    static QSample* masterSample(const std::vector<DeviceDescription>& present);
    /// The index of the sample's device now; -1 without one, and where a wanted one isn't there that is told.
    int placeOf(const QSample* sample, ModelGraph::EnumGraph name, const ObjectAudioDevice& stored,
                const std::vector<DeviceDescription>& present);
};
