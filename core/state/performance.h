#pragma once

#include "model/deckindex.h"
#include "model/qsample.h"

#include <QObject>

#include <array>
#include <atomic>

/// What the audio and the display run with: frames a buffer, the repaint interval and the sample of each
/// stream. Written on the GUI thread outside a session; the values don't change while a stream runs.
/// Getters of numbers: Thread-safe: yes. Realtime-safe: yes.
class Performance : public QObject {
    Q_OBJECT
public:
    explicit Performance(QObject* parent = nullptr);

    /// Frames a buffer of the deck's input stream.
    double inputBuffer(ModelGraph::EnumGraph name) const {
        return m_inputBuffer[deckIndex(name)].load(std::memory_order_relaxed);
    }
    void setInputBuffer(ModelGraph::EnumGraph name, double value);
    /// Frames a buffer of the output stream.
    double outputBuffer() const { return m_outputBuffer.load(std::memory_order_relaxed); }
    void setOutputBuffer(double value) { m_outputBuffer.store(value, std::memory_order_relaxed); }
    /// The output buffer at the moment the output device was last chosen.
    double outputBufferSelected() const { return m_outputBufferSelected; }

    /// Milliseconds between two repaints of the graph.
    double displayInterval() const { return m_displayInterval; }
    /// `frequency` in repaints a second.
    void setDisplayFrequency(double frequency);

    QSample* sample(ModelGraph::EnumGraph name) const { return m_sampleInput[deckIndex(name)]; }
    /// The replaced sample is not freed: a worker may still hold it.
    void setSample(ModelGraph::EnumGraph name, QSample* sample, bool emitSignal);
    QSample* sampleOutput() const { return m_sampleOutput; }
    /// The replaced sample is not freed.
    void setSampleOutput(QSample* sample);

Q_SIGNALS:
    void signalDisplayFrequency();
    void s_InputSample(ModelGraph::EnumGraph name);
    void s_OutputSample();

private:
    std::array<std::atomic<double>, 2> m_inputBuffer{};
    std::atomic<double> m_outputBuffer{0.0};
    static_assert(std::atomic<double>::is_always_lock_free);
    double m_displayInterval = 0.0;
    double m_outputBufferSelected = 0.0;
    std::array<QSample*, 2> m_sampleInput;
    QSample* m_sampleOutput;
};
