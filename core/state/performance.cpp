#include "performance.h"

Performance::Performance(QObject* parent)
    : QObject(parent)
    , m_sampleInput{lastingSample(QSample(ModelGraph::INPUT_DECKA)),
                    lastingSample(QSample(ModelGraph::INPUT_DECKB))}
    , m_sampleOutput(lastingSample(QSample(ModelGraph::OUTPUT_MASTER))) {}

void Performance::setInputBuffer(ModelGraph::EnumGraph name, double value) {
    m_inputBuffer[deckIndex(name)].store(value, std::memory_order_relaxed);
}

void Performance::setDisplayFrequency(double frequency) {
    m_displayInterval = 1.0 / frequency * 1000.0;
    Q_EMIT signalDisplayFrequency();
}

void Performance::setSample(ModelGraph::EnumGraph name, QSample* sample, bool emitSignal) {
    m_sampleInput[deckIndex(name)] = sample;
    if (emitSignal) {
        Q_EMIT s_InputSample(name);
    }
}

void Performance::setSampleOutput(QSample* sample) {
    m_sampleOutput = sample;
    m_outputBufferSelected = outputBuffer();
    Q_EMIT s_OutputSample();
}
