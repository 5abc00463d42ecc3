#pragma once

#include "model/deckindex.h"

#include <QObject>

#include <array>
#include <atomic>

/// The platter's angle and zero mark of each deck, degrees. Thread-safe: yes. Realtime-safe: yes.
class Vinyl : public QObject {
    Q_OBJECT
public:
    explicit Vinyl(QObject* parent = nullptr) : QObject(parent) {}

    /// 0 up to but not including 360; written with each published point.
    double angle(ModelGraph::EnumGraph name) const { return load(m_angle, name); }
    void setAngle(ModelGraph::EnumGraph name, double value) { store(m_angle, name, value); }
    /// The angle that counts as zero.
    double deltaPosition(ModelGraph::EnumGraph name) const { return load(m_deltaPosition, name); }
    void setDeltaPosition(ModelGraph::EnumGraph name, double value) { store(m_deltaPosition, name, value); }

private:
    using Pair = std::array<std::atomic<double>, 2>;
    static_assert(std::atomic<double>::is_always_lock_free);

    static double load(const Pair& pair, ModelGraph::EnumGraph name) {
        return pair[deckIndex(name)].load(std::memory_order_relaxed);
    }
    static void store(Pair& pair, ModelGraph::EnumGraph name, double value) {
        pair[deckIndex(name)].store(value, std::memory_order_relaxed);
    }

    Pair m_angle{};
    Pair m_deltaPosition{};
};
