#pragma once
// A second road of a frame, from the samples to the published point, for comparisons. It includes nothing of
// the program. One step a line, everything computed anew for every frame.

#include "support/plaindecoder.h"

#include <array>

/// A published point.
struct PlainPoint {
    double position;
    double angle;
    double rawAngle;
    double pitch;
    double time;
    int timecode;
    int direction;
    int soundOn;
};

/// What the hand and the settings say while a frame is decoded.
struct PlainSurroundings {
    enum Fader { Left, Middle, Right };
    Fader fader = Middle;
    bool mix = false;
    bool reverse = false;
};

class PlainDeck {
public:
    PlainDeck(bool deckA, const std::string& timecode, double rate, double outputRate, double buffer,
              double vinylDelta)
        : isDeckA(deckA)
        , tc(plainRecord(timecode), rate, false)
        , codeScale(timecode.starts_with("traktor") ? 2.0 : 1.0)
        , degreesPerCode(1.0 / tc.record.carrier * 360.0 * 0.5555555555555556)
        , curveStep(buffer * rate / outputRate)
        , deltaPosition(vinylDelta) {}

    void restart() {
        fastTracking = false;
        jumpForward = false;
        jumpBackward = false;
        travelled = 0.0;
        lastCode = 0;
        lastPosition = 0.0;
        predictedSpeed = 0.0;
        acceleration = 0.0;
        lastSpeed = 0.0;
        frameCounter = 0.0;
        positionDelta = 0.0;
        nextPointTime = 0.0;
        points.clear();
    }

    void frame(int left, int right, const PlainSurroundings& now) {
        tc.frame(left, right);
        int code = tc.position();
        if (code != -1) {
            gate(code);
        }
        const double dt = tc.dt;
        double a = (tc.v - lastSpeed) * (1.0 / dt) * 0.35 + 0.65 * acceleration;
        a = a > 450.0 ? 450.0 : a < -450.0 ? -450.0 : a;
        acceleration = a;
        lastSpeed = tc.v;
        predictedSpeed = tc.v + dt * a;
        const double predicted = (predictedSpeed * dt + tc.x) + dt * dt * (a * 0.5);
        const double r = trackedX - predicted;
        const double wide = std::fabs(tc.v) * 256.0 / 10.0;
        const double limit = (2 * dt + 1.0) * band(wide > 255.0 ? 255 : int(wide));
        if (std::fabs(r) > limit) {
            fastTracking = true;
        } else {
            fastTracking = fastTracking && std::fabs(r) > limit - 0.2;
        }
        const double e = (std::fabs(r) - limit) * 0.7;
        double gx = 0.001953125;
        double gv = 7.62939453125e-06;
        if (e > 1.0) {
            gx = 1.0;
            gv = 1.0;
        } else if (e >= 0) {
            gx = e * 0.998046875 + 0.001953125;
            gv = e * 0.9999923706054688 + 7.62939453125e-06;
        }
        const double newX = predicted + gx * r;
        trackedX = newX;
        const double newV = predictedSpeed + (1.0 / dt) * (gv * r);
        travelled = travelled + (tc.alpha * newV + newX);
        if (int(frameCounter) == int(nextPointTime)) {
            publish(code, newV, now);
        }
        frameCounter += 1.0;
    }

    bool isDeckA;
    PlainDecoder tc;
    double codeScale;
    double degreesPerCode;
    double curveStep;
    double deltaPosition;
    std::vector<PlainPoint> points;
    bool announced = false; // word of a code went to the curves
    double angle = 0.0;
    bool timecodeOn = false;
    double frameCounter = 0.0;
    int lastCode = 0;
    bool jumpForward = false;
    bool jumpBackward = false;
    double lastPosition = 0.0;
    double nextPointTime = 0.0;
    double travelled = 0.0;
    double trackedX = 0.0;
    double predictedSpeed = 0.0;
    double acceleration = 0.0;
    double lastSpeed = 0.0;
    bool fastTracking = false;
    double positionDelta = 0.0;

private:
    // 0.7, 0.71640625 ... 4.88359375, each the double next to the written decimal.
    static double band(int index) {
        static const std::array<double, 256> bands = [] {
            std::array<double, 256> table{};
            for (int i = 0; i < 256; ++i) {
                table[static_cast<std::size_t>(i)] =
                    std::stod(std::to_string(70000000 + 1640625 * i) + "e-8");
            }
            return table;
        }();
        return bands[static_cast<std::size_t>(index)];
    }

    void gate(int& code) {
        if (lastCode <= 1000) {
            code = -1;
        } else if (lastCode != code) {
            if (code > lastCode + 500) {
                jumpForward = true;
            } else if (code < lastCode - 500) {
                jumpBackward = true;
            }
            if (!points.empty() && points.front().timecode == -1) {
                announced = true;
            }
            travelled = 0.0;
            trackedX = tc.x;
            predictedSpeed = 0.0;
            acceleration = 0.0;
        }
        lastCode = code;
        timecodeOn = true;
    }

    void publish(int code, double pitch, const PlainSurroundings& now) {
        const double base = lastCode == -1 ? 0.0 : lastCode;
        const double position = travelled * codeScale + base;
        double rawAngle = degreesPerCode * position;
        if (jumpForward) {
            positionDelta = positionDelta - (position - lastPosition);
            jumpForward = false;
        }
        if (jumpBackward) {
            positionDelta = positionDelta + (lastPosition - position);
            jumpBackward = false;
        }
        const double d = std::fabs(position - lastPosition);
        if (d > 25.0) {
            predictedSpeed = 0.0;
            acceleration = 0.0;
            if (d > 100.0) {
                trackedX = tc.x;
            }
        }
        if (timecodeOn) {
            rawAngle = rawAngle - deltaPosition;
        }
        angle = std::fmod(rawAngle, 360.0);
        if (angle < 0.0) {
            angle += 360.0;
        }
        points.push_back({positionDelta + position, angle, rawAngle, pitch, frameCounter, code,
                          tc.forwards ? 0 : 1, audible(now) ? 1 : 0});
        lastPosition = position;
        nextPointTime = nextPointTime + curveStep;
    }

    bool audible(const PlainSurroundings& now) const {
        if (now.fader == PlainSurroundings::Middle) {
            return true;
        }
        if (!now.mix) {
            return false;
        }
        const bool ownEnd = now.fader == (isDeckA ? PlainSurroundings::Left : PlainSurroundings::Right);
        return ownEnd != now.reverse;
    }
};
