#pragma once

#include "phrasing/qphrasing.h"

#include <QColor>

#include <vector>

/// The colour areas of a deck as a drawing looks them up: once for every point. A plain copy of their list:
/// what has been drawn with it is out of date as soon as a newer copy isn't equal.
class AreaColors {
public:
    struct Area {
        double start = 0.0; ///< degrees, inclusive
        double end = 0.0;   ///< degrees, exclusive
        QColor color;
        double span() const { return end - start; }
        bool operator==(const Area&) const = default;
    };

    AreaColors() = default;
    /// In the order of the list: of two areas that hold an angle the first one counts.
    explicit AreaColors(std::vector<Area> areas);
    static std::vector<Area> listed(const QPhrasingList& list);
    /// Takes the areas of the list; cheap if they are the same ones.
    void update(const QPhrasingList& list);

    /// Whether the deck has no areas at all.
    bool empty() const { return m_areas.empty(); }
    /// The area that holds the angle in degrees, null if none does. It belongs to this object.
    const Area* at(double angle) const;

    bool operator==(const AreaColors& other) const { return m_areas == other.m_areas; }

private:
    std::vector<Area> m_areas;
    std::vector<double> m_edges; ///< where an area starts or ends, rising
    std::vector<int> m_holders;  ///< for each edge: the area up to the next one; -1 for none
};
