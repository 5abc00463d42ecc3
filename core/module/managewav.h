#pragma once

#include "takestore.h"

#include <QObject>
#include <QString>

class QSample;

/// The store and the writer of one take, interleaved as it came from the device.
class ManageWAV : public QObject {
    Q_OBJECT
public:
    explicit ManageWAV(QObject* parent = nullptr) : QObject(parent) {}

    /// Adds one value. Realtime-safe; the input callback.
    void append(const std::int16_t* sample) { m_samples.append(*sample); }
    /// Makes room ahead of the callback. GUI thread, a few times a second while recording.
    void prepare() { m_samples.prepare(); }
    /// Empties the take. Not while the callback runs.
    void clear() { m_samples.clear(); }
    /// Writes the take as 16-bit stereo at the sample's rate. False if the file can't be opened or takes no
    /// more; what was written up to there can be read, and a file without a whole frame is taken away again.
    /// GUI thread.
    bool write(const QString& fileName, const QSample& sample) const;

    const TakeStore& samples() const { return m_samples; }

private:
    TakeStore m_samples;
};
