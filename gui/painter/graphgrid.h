#pragma once

#include "axislabels.h"
#include "graphlayout.h"
#include "graphscale.h"
#include "labelcache.h"

#include "model/modeldisplay.h"

#include <QColor>

#include <optional>

class ManagePhrasing;

/// What the grid of one paint shows.
struct GridScene {
    const GraphScale& scale;
    const GraphLayout& layout;
    int width = 0; ///< of the widget, pixels
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    const ManagePhrasing& areas;
    double beatLength = 0.0;     ///< frames a beat
    double firstMetronome = 0.0; ///< frame of the first click
    double sampleRate = 0.0;
    double bpmEffective = 0.0;
    QColor ground;                         ///< what the widget was filled with
    std::optional<QString> latencyText;    ///< none while it isn't to be shown
    LabelCache& labels;                    ///< the graph's own, kept from paint to paint
    std::optional<LabelSpan> cursorText{}; ///< what the cursor's number takes of the row of the beat numbers
};

/// Draws beat lines, axes, value lines and their labels, below the curves. While the graph follows the cursor
/// the beat lines stand in whole pixel columns, as the points of the curves do, and move in step with them. A
/// label without room gives way: to the cursor's number first, then to the captions.
void drawGrid(QPainter& painter, const GridScene& scene);
