#pragma once

#include "curvedrawing.h"
#include "scrollpicture.h"
#include "strokechain.h"

#include <array>
#include <cstdint>
#include <vector>

/// Draws one curve, in any display. While the graph follows the cursor the picture only moves, by whole
/// pixels: it is kept, moved, and just the new lines are added. What comes out is, pixel for pixel, what a
/// drawing from scratch gives.
///
/// The plot has four parts. The kept picture holds the lines between chosen points. At its left edge the line
/// enters at the first visible point, which changes with every move: up to a seam the curve is drawn anew.
/// Its end has no cap, since a line will follow. The tail leads from the last chosen point to the newest one:
/// it is drawn above the rest. The icons at the cuts lie above all lines; they are few and drawn at every
/// paint.
class CurveLayer {
public:
    /// `offset` moves the positions of the normal display.
    void draw(const CurveScene& scene, const CurveExtract& curve, double offset);
    /// The points have been replaced.
    void forget();
    /// How often a picture that moves was drawn from scratch.
    unsigned redraws() const { return m_redraws; }

private:
    /// Where the widget's pixels lie on the device.
    struct Device {
        double ratio;     ///< device pixels a pixel
        QPointF fraction; ///< of a device pixel, by which the widget's corner is off
        QSize size;
        bool operator==(const Device&) const = default;
        Capsule placed(const Capsule& capsule) const;
    };
    /// What the kept picture was drawn with.
    struct Key {
        Device device;
        GraphScale scale;
        GraphOptions options;
        ModelDisplay::EnumDisplay display;
        ModelGraph::EnumGraph item;
        double offset;
        std::size_t stride;
        const CurvePoint* front;
        std::uint64_t generation; ///< of the points
        unsigned colors;          ///< m_colors
        bool fits(const Key& other) const;
    };
    struct Picture {
        ScrollPicture picture;
        std::optional<Key> key;
        std::size_t lastDrawn = 0;
        CurvePoint first; ///< the curve's first point and the last drawn one: an amended curve differs
        CurvePoint last;
    };
    static constexpr int maxPhases = 5;

    void noteColors(const CurveScene& scene);
    /// Brings the picture up to date, all but what lies left of the seam. Returns what is open at its end.
    StrokeChain update(Picture& picture, const Key& key, const CurveScene& scene, const CurveExtract& curve,
                       const CurveLine& line);
    void drawEntry(Picture& picture, const Device& device, const CurveScene& scene, const CurveExtract& curve,
                   const CurveLine& line, double seam);
    StrokeChain drawAll(Picture& picture, const Device& device, const CurveScene& scene,
                        const CurveExtract& curve, const CurveLine& line);
    /// Of what leads to a chosen point.
    std::optional<CurveStroke> lastStroke(const CurveScene& scene, const CurveExtract& curve,
                                          const CurveLine& line, std::size_t point);
    /// Goes on where `chain` is open.
    void drawTail(const Device& device, const CurveScene& scene, const CurveExtract& curve,
                  const CurveLine& line, StrokeChain chain);
    /// The columns before `end` of it.
    void drawStep(ScrollPicture& picture, const Device& device, const CurveScene& scene,
                  const CurveExtract& curve, const CurveStep& step, int end, StrokeChain& chain);
    static bool scroll(Picture& picture, const Key& key, const CurveExtract& curve, std::size_t lastChosen);

    CurveDrawing m_drawing;
    /// With a fractional ratio a pixel is no whole number of device pixels. Every few pixels are: there is a
    /// picture for each step between.
    std::array<Picture, maxPhases> m_pictures;
    QImage m_tail;
    AreaColors m_areas; ///< what the pictures were coloured with
    std::vector<WavePair> m_wavePairs;
    unsigned m_colors = 0; ///< counts the changes of the two
    unsigned m_redraws = 0;
};
