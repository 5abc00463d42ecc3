#pragma once

#include "axislabels.h"
#include "graphlayout.h"
#include "labelcache.h"

#include <QString>

#include <optional>

/// The cursor of one paint: a line through the plot, and below it the beats since the start of the run.
class GraphCursor {
public:
    /// `column`: the pixel that it stands in. `beats` as cursorBeat gives them. The text is laid out with the
    /// painter's font and `labels`.
    GraphCursor(QPainter& painter, const GraphLayout& layout, int width, int column, const QString& beats,
                LabelCache& labels);

    /// What the text takes of the row below the plot; none while the cursor stands beside the graph.
    const std::optional<LabelSpan>& text() const { return m_text; }
    void draw(QPainter& painter, LabelCache& labels) const;

private:
    const GraphLayout& m_layout;
    int m_column;
    // Apart, each of them laid out before: the whole is another text in every frame.
    QString m_beats;
    QString m_hundredths;
    double m_beatsWidth = 0.0;
    std::optional<LabelSpan> m_text;
};
