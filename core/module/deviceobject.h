#pragma once

#include "model/modelgraph.h"

#include <QObject>

class QSample;

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

public Q_SLOTS:
    /// Takes the stored devices into Performance; a missing one gives a default sample. Outside a session.
    void controllerDevices();
    /// Opens the streams of a session by announcing their samples. While recording, a session after the first
    /// gets a folder and file names of its own.
    void runDevices();

private:
    void beginTake();
};
