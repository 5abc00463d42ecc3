#pragma once

#include "model/modelgraph.h"

#include <QObject>

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

class WaveData;

/// The sound of the sample that each deck's areas were made for; null where there is none. A deck is
/// INPUT_DECKB or, for any other value, deck A. GUI thread.
class WavPhrasing : public QObject {
    Q_OBJECT
public:
    explicit WavPhrasing(QObject* parent = nullptr) : QObject(parent) {}

    std::shared_ptr<const WaveData> wav(ModelGraph::EnumGraph name) const { return m_wavs[index(name)]; }
    /// The wave is shared with whoever else shows or plays it.
    void setWav(ModelGraph::EnumGraph name, std::shared_ptr<const WaveData> wav) {
        m_wavs[index(name)] = std::move(wav);
    }

private:
    static std::size_t index(ModelGraph::EnumGraph name) { return name == ModelGraph::INPUT_DECKB ? 1U : 0U; }

    std::array<std::shared_ptr<const WaveData>, 2> m_wavs;
};
