#pragma once

#include "curvescene.h"

#include <QLineF>
#include <QPointF>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// One line of a curve, in the pen of one of its points.
struct CurveSegment {
    QLineF line;           ///< pixels
    std::size_t point = 0; ///< whose pen it takes
};

/// What is drawn for one point: up to two lines that lead to it, and the direct wave at its place.
struct CurveStep {
    std::size_t point = 0;
    std::array<CurveSegment, 2> segments;
    std::size_t lines = 0; ///< how many of the segments there are
    /// Upright, in the pen that the point has as one of WAV_DIRECT. Above the lines.
    std::optional<CurveSegment> tick;

    void add(QPointF from, QPointF to, std::size_t pen) { segments[lines++] = {{from, to}, pen}; }
};

/// The way of a curve through its chosen points. What leads to a point depends on that point and the chosen
/// one before it, never on where the walk began: a picture that is kept and added to is that of a new
/// drawing.
class CurveLine {
public:
    virtual ~CurveLine() = default;

    const CurvePointStore::View& points() const { return m_points; }
    CurveWalk walk() const { return m_walk; }
    /// The last chosen point; none where the stride passes over the whole stretch.
    std::optional<std::size_t> lastChosen() const { return m_lastChosen; }
    double column(std::size_t point) const { return m_scale.column(m_points[point].time); }
    /// The column that a time between two points lies in.
    double columnAt(double time) const { return m_scale.column(time); }
    /// Whole pixels of a point, where the line meets it.
    QPointF pixel(std::size_t point) const { return vertex(point).pixel; }
    /// Whole pixels of a point, where the mark of a closed passage lies on it.
    QPointF markPixel(std::size_t point) const;

    /// From the first visible point to the first chosen one. Not every display has it.
    std::optional<CurveStep> entry() const;
    /// From the chosen point before `chosen` to it; `chosen` lies behind the first chosen one.
    CurveStep step(std::size_t chosen) const;
    /// From where the chosen points end to the point before the end of the stretch, so that thinning never
    /// cuts the tail; none where that is the same pixel.
    std::optional<CurveStep> tail() const;
    /// All of them in the order of drawing.
    std::vector<CurveStep> all() const;

protected:
    /// A point and where it lies.
    struct Vertex {
        std::size_t point;
        QPointF pixel;
    };

    /// `wavePairs`: of the direct wave that goes with the curve; empty for none.
    CurveLine(const CurveExtract& curve, const GraphScale& scale, std::span<const WavePair> wavePairs);

    /// What the display plots.
    virtual double value(const CurvePoint& point) const = 0;
    virtual double markValue(const CurvePoint& point) const { return value(point); }
    /// Whether a walk that starts at this point has an entry.
    virtual bool enters() const { return true; }
    /// Adds the lines from one point to the other.
    virtual void connect(const Vertex& from, const Vertex& to, CurveStep& step) const = 0;

    const CurveStretch& stretch() const { return m_stretch; }
    /// Whether the wave stands above the plot.
    bool hasDirectWave() const { return !m_wavePairs.empty(); }
    const GraphScale& scale() const { return m_scale; }

private:
    Vertex vertex(std::size_t point) const;
    Vertex firstVertex() const;
    CurveStep stepBetween(const Vertex& from, const Vertex& to) const;
    CurveSegment waveTick(const Vertex& from, const Vertex& to) const;

    CurvePointStore::View m_points;
    CurveStretch m_stretch;
    GraphScale m_scale;
    std::span<const WavePair> m_wavePairs;
    CurveWalk m_walk;
    std::optional<std::size_t> m_lastChosen;
};

/// The line of the scene's display; null for a display that has none. `offset` moves the positions of the
/// normal display.
std::unique_ptr<CurveLine> curveLine(const CurveScene& scene, const CurveExtract& curve, double offset);
