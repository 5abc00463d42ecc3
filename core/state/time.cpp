#include "time.h"

#include <chrono>

double Time::msecsNow() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

void Time::setStartNow(ModelGraph::EnumGraph name) {
    if (Deck* d = deck(name)) {
        d->startTime.store(msecsNow(), std::memory_order_relaxed);
    }
}

double Time::startTime(ModelGraph::EnumGraph name) const {
    const Deck* d = deck(name);
    return d == nullptr ? 0.0 : d->startTime.load(std::memory_order_relaxed);
}

double Time::framesSince(ModelGraph::EnumGraph name, double msecs, const QSample* sample) const {
    return sample->samplesPerMs() * (msecs - startTime(name));
}

double Time::framesNow(ModelGraph::EnumGraph name, const QSample* sample) const {
    return framesSince(name, msecsNow(), sample);
}

double Time::cursor(ModelGraph::EnumGraph name) const {
    const Deck* d = deck(name);
    return d == nullptr ? 0.0 : d->cursor.load(std::memory_order_relaxed);
}

void Time::setCursor(ModelGraph::EnumGraph name, double value) {
    if (Deck* d = deck(name)) {
        d->cursor.store(value, std::memory_order_relaxed);
    }
}

void Time::clearCursor(ModelGraph::EnumGraph name) {
    setCursor(name, 0.0);
}

void Time::setFrameCounter(ModelGraph::EnumGraph name, double value) {
    if (Deck* d = deck(name)) {
        d->frameCounter.store(value, std::memory_order_relaxed);
    }
}

void Time::clearFrameCounter(ModelGraph::EnumGraph name) {
    setFrameCounter(name, 0.0);
}

double Time::observeFrameCounter(ModelGraph::EnumGraph name) {
    Deck* d = deck(name);
    if (d == nullptr) {
        return 0.0;
    }
    d->observed = d->frameCounter.load(std::memory_order_relaxed);
    return d->observed;
}

double Time::observedFrameCounter(ModelGraph::EnumGraph name) const {
    const Deck* d = deck(name);
    return d == nullptr ? 0.0 : d->observed;
}
