#pragma once

#include "model/modelgraph.h"
#include "model/qsample.h"

#include <QObject>

#include <array>
#include <atomic>
#include <utility>

/// The clocks of the two decks, in sample frames of the deck. Any name but INPUT_DECKA and INPUT_DECKB is
/// ignored: writes do nothing and reads give 0.0.
/// Thread-safe: yes, one writer a value. Realtime-safe: yes.
class Time : public QObject {
    Q_OBJECT
public:
    explicit Time(QObject* parent = nullptr) : QObject(parent) {}

    /// Milliseconds of the machine's monotonic clock: it never goes back and never jumps, whatever midnight,
    /// daylight changes and time servers do to the time of day. Its zero says nothing.
    static double msecsNow();

    void setStartNow(ModelGraph::EnumGraph name);
    /// msecsNow at the deck's last start.
    double startTime(ModelGraph::EnumGraph name) const;
    /// Frames of `sample` between the deck's start and `msecs`.
    double framesSince(ModelGraph::EnumGraph name, double msecs, const QSample* sample) const;
    double framesNow(ModelGraph::EnumGraph name, const QSample* sample) const;

    /// Frames that have passed by msecsNow since the deck's start; written by the graph. 0 until the deck has
    /// received a frame.
    double cursor(ModelGraph::EnumGraph name) const;
    void setCursor(ModelGraph::EnumGraph name, double value);
    void clearCursor(ModelGraph::EnumGraph name);

    /// Frames that the decoder has received.
    double frameCounter(ModelGraph::EnumGraph name) const {
        const Deck* d = deck(name);
        return d == nullptr ? 0.0 : d->frameCounter.load(std::memory_order_relaxed);
    }
    void setFrameCounter(ModelGraph::EnumGraph name, double value);
    void clearFrameCounter(ModelGraph::EnumGraph name);
    /// One frame more. One thread at a time.
    void advanceFrame(ModelGraph::EnumGraph name) {
        if (Deck* d = deck(name)) {
            // One writer, so a load and a store will do.
            d->frameCounter.store(d->frameCounter.load(std::memory_order_relaxed) + 1.0,
                                  std::memory_order_relaxed);
        }
    }

    /// frameCounter, kept as what the GUI last saw of this deck. GUI thread.
    double observeFrameCounter(ModelGraph::EnumGraph name);
    /// What observeFrameCounter last gave. GUI thread.
    double observedFrameCounter(ModelGraph::EnumGraph name) const;

private:
    struct Deck {
        std::atomic<double> startTime{0.0};
        std::atomic<double> cursor{0.0};
        std::atomic<double> frameCounter{0.0};
        double observed = 0.0;
    };
    static_assert(std::atomic<double>::is_always_lock_free);

    Deck* deck(ModelGraph::EnumGraph name) { return const_cast<Deck*>(std::as_const(*this).deck(name)); }
    const Deck* deck(ModelGraph::EnumGraph name) const {
        if (name == ModelGraph::INPUT_DECKA) {
            return &m_decks[0];
        }
        return name == ModelGraph::INPUT_DECKB ? &m_decks[1] : nullptr;
    }

    std::array<Deck, 2> m_decks;
};
