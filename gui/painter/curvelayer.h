#pragma once

#include "curvedrawing.h"

#include <QImage>

#include <array>
#include <cstdint>

/// Draws one curve of the normal display. While the graph follows the cursor the picture only moves, by whole
/// pixels: it is kept, moved, and just the new lines are added. What comes out is, pixel for pixel, what a
/// drawing from scratch gives.
///
/// The plot has three parts. The kept picture holds the lines between chosen points. At the left edge the
/// line enters at the first visible point, which changes with every move: up to a seam the curve is drawn
/// anew. At its end the tail leads from the last chosen point to the newest one: it is drawn above the rest.
class CurveLayer {
public:
    void draw(const CurveScene& scene, const CurveExtract& curve, double offset);
    /// The points have been replaced.
    void forget();
    /// How often a picture was drawn from scratch.
    unsigned redraws() const { return m_redraws; }

private:
    /// Where the widget's pixels lie on the device.
    struct Device {
        double ratio;     ///< device pixels a pixel
        QPointF fraction; ///< of a device pixel, by which the widget's corner is off
        QSize size;
        bool operator==(const Device&) const = default;
    };
    struct Key {
        Device device;
        GraphScale scale;
        GraphOptions options;
        ModelGraph::EnumGraph item;
        double offset;
        std::size_t stride;
        const CurvePoint* front;
        bool fits(const Key& other) const;
    };
    struct Picture {
        QImage image;
        std::optional<Key> key;
        std::size_t lastDrawn = 0;
        CurvePoint first; ///< the curve's first point and the last drawn one: an amended curve differs
        CurvePoint last;
    };
    static constexpr int maxPhases = 4;

    void drawDirect(const CurveScene& scene, const CurveExtract& curve, const NormalLine& line);
    void drawEntry(const CurveScene& scene, const CurveExtract& curve, const NormalLine& line, double seam);
    /// Brings the picture up to date.
    void update(Picture& picture, const Key& key, const CurveScene& scene, const CurveExtract& curve,
                const NormalLine& line);
    static bool scroll(Picture& picture, const Key& key, const CurveExtract& curve, std::size_t lastChosen);

    SegmentDrawing m_drawing;
    /// With a fractional ratio a pixel is no whole number of device pixels. Every few pixels are: there is a
    /// picture for each step between.
    std::array<Picture, maxPhases> m_pictures;
    unsigned m_redraws = 0;
};
