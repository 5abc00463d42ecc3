#pragma once

#include "angleline.h"

/// The line of the phrasing display: each area fills the height of the plot. Where the needle goes from one
/// area to another of another colour the line wraps, and outside all areas there is none.
class PhrasingLine : public AngleLine {
public:
    /// `areas` must outlive the line. `closedHidden`: nothing is drawn while the fader is closed.
    PhrasingLine(const CurveExtract& curve, const GraphScale& scale, const AreaColors& areas,
                 bool closedHidden = false, std::span<const WavePair> wavePairs = {})
        : AngleLine(curve, scale, areas, wavePairs), m_closedHidden(closedHidden) {}

protected:
    double value(const CurvePoint& point) const override { return phrasingY(point, areas()); }
    bool enters() const override { return walk().start != stretch().first; }
    void connect(const Vertex& from, const Vertex& to, CurveStep& step) const override;

private:
    const AreaColors::Area* areaOf(std::size_t point) const { return areas().at(points()[point].angle); }
    std::size_t entryPen(const Vertex& from, const Vertex& to) const;

    bool m_closedHidden;
};
