#pragma once

#include "model/deckindex.h"

#include <QObject>

#include <array>
#include <atomic>

/// Per deck: whether a valid code has been read since the last initialise, and how far the plotted position
/// is offset. Thread-safe: yes. Realtime-safe: yes.
class Timecode : public QObject {
    Q_OBJECT
public:
    explicit Timecode(QObject* parent = nullptr) : QObject(parent) {}

    bool isTimecodeOn(ModelGraph::EnumGraph name) const {
        return m_timecodeOn[deckIndex(name)].load(std::memory_order_relaxed);
    }
    /// Added to a deck's position when a point is published, in position units.
    double positionDelta(ModelGraph::EnumGraph name) const {
        return m_positionDelta[deckIndex(name)].load(std::memory_order_relaxed);
    }
    void setPositionDelta(ModelGraph::EnumGraph name, double value) {
        m_positionDelta[deckIndex(name)].store(value, std::memory_order_relaxed);
    }
    void resetPositionDelta(ModelGraph::EnumGraph name) { setPositionDelta(name, 0.0); }

public Q_SLOTS:
    void modeTimecode_on(ModelGraph::EnumGraph name) { setOn(name, true); }
    void modeTimecode_off(ModelGraph::EnumGraph name) { setOn(name, false); }

private:
    void setOn(ModelGraph::EnumGraph name, bool on) {
        m_timecodeOn[deckIndex(name)].store(on, std::memory_order_relaxed);
    }

    std::array<std::atomic<double>, 2> m_positionDelta{};
    std::array<std::atomic<bool>, 2> m_timecodeOn{};
    static_assert(std::atomic<double>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
};
