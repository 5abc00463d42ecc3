#pragma once

#include "curvedrawing.h"

#include <optional>

/// The strokes of a curve one after the other, as pieces that don't overlap where one goes on like the one
/// before: no pixel there is mixed twice, and there are far fewer of them than in lines with two caps each.
///
/// A stroke's end is left open until it is known what follows. Where something follows that isn't like it, or
/// nothing, it gets its cap.
class StrokeChain {
public:
    StrokeChain() = default;
    /// Goes on after a stroke that was the last one of another chain.
    explicit StrokeChain(const std::optional<CurveStroke>& last) {
        if (last && canJoin(*last)) {
            m_open = last;
        }
    }

    /// draw(stroke) is called for what there is to draw.
    template <typename Draw> void add(CurveStroke stroke, Draw draw) {
        if (m_open && joins(*m_open, stroke)) {
            stroke.capsule.startCap = false;
            stroke.capsule.before = QPointF(m_open->capsule.x1, m_open->capsule.y1);
        } else {
            close(draw);
        }
        m_open = canJoin(stroke) ? std::optional(stroke) : std::nullopt;
        stroke.capsule.endCap = !m_open;
        draw(stroke);
    }
    /// All strokes of a step. After a step without any, what follows isn't the next stroke but the one after.
    template <typename Draw> void add(const CurveStrokes& strokes, Draw draw) {
        for (const CurveStroke& stroke : strokes) {
            add(stroke, draw);
        }
        if (strokes.count == 0) {
            close(draw);
        }
    }
    /// Nothing follows.
    template <typename Draw> void close(Draw draw) {
        if (m_open) {
            CurveStroke cap = *m_open;
            cap.capsule.startCap = false;
            cap.capsule.strip = false;
            cap.capsule.before.reset();
            draw(cap);
        }
        m_open.reset();
    }

private:
    // What lets something through shows how its lines overlap, as the painter's do.
    static bool canJoin(const CurveStroke& stroke) {
        const Capsule& c = stroke.capsule;
        return qAlpha(stroke.color) == 255 && (c.x1 != c.x2 || c.y1 != c.y2);
    }
    static bool joins(const CurveStroke& before, const CurveStroke& stroke) {
        const Capsule& a = before.capsule;
        const Capsule& b = stroke.capsule;
        return canJoin(stroke) && before.color == stroke.color && a.width == b.width && a.x2 == b.x1 &&
               a.y2 == b.y1;
    }

    std::optional<CurveStroke> m_open;
};
