#pragma once
// A deck of the program beside the second one.

#include "support/handfeddeck.h"
#include "support/plaindeck.h"

#include <bit>
#include <cstring>

inline bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// Whether a published point is the second deck's in all its bytes, those that nothing is written to
/// included.
inline bool samePoint(const CurvePoint& a, const PlainPoint& b) {
    CurvePoint expected;
    std::memset(static_cast<void*>(&expected), 0, sizeof expected);
    expected.position = b.position;
    expected.angle = b.angle;
    expected.rawAngle = b.rawAngle;
    expected.pitch = b.pitch;
    expected.time = b.time;
    expected.timecode = b.timecode;
    expected.direction = b.direction;
    expected.soundOn = static_cast<std::uint8_t>(b.soundOn);
    return std::memcmp(&a, &expected, sizeof expected) == 0;
}

/// What the settings and the fader say now, for the second deck.
inline PlainSurroundings plainSurroundings() {
    const Singleton& shared = Singleton::instance();
    PlainSurroundings now;
    switch (shared.midi()->crossFader()) {
    case ModelCrossFader::LEFT:
        now.fader = PlainSurroundings::Left;
        break;
    case ModelCrossFader::RIGHT:
        now.fader = PlainSurroundings::Right;
        break;
    case ModelCrossFader::MIDDLE:
        now.fader = PlainSurroundings::Middle;
        break;
    }
    now.mix = shared.mode()->modeMix();
    now.reverse = shared.mode()->modeReverse();
    return now;
}
