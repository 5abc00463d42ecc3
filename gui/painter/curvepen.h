#pragma once

#include "graphoptions.h"

#include "model/modelgraph.h"

#include <QColor>
#include <QPen>

#include <optional>

/// The pen of a curve's points. A curve is thick where the crossfader lets it be heard and thin, or missing,
/// where not. The last pen is kept: neighbouring points mostly share it.
class CurvePen {
public:
    /// The pen of a point. The reference is good until the next call.
    const QPen& pen(ModelGraph::EnumGraph item, bool soundOn, const QColor& color,
                    const GraphOptions& options);
    /// How many pens have been made.
    unsigned made() const { return m_made; }

private:
    struct Key {
        ModelGraph::EnumGraph item;
        bool soundOn;
        bool invert;
        QColor color;
        int width;
        bool drawn;
        bool operator==(const Key&) const = default;
    };
    std::optional<Key> m_key;
    QPen m_pen;
    unsigned m_made = 0;
};
