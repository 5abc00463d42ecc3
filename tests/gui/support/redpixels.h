#pragma once
// The red texts that a graph shows under its plot.

#include "painter/qwpainter.h"

#include <QImage>

/// Those right of the latency, the cursor's own text included.
inline int redPixelsBelowThePlot(QWPainter& graph) {
    const QImage picture = graph.grab().toImage();
    const int top = int(graph.layoutPixels().plotBottom) + 5;
    int count = 0;
    for (int y = top; y < picture.height(); ++y) {
        for (int x = 205; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            count += color.red() > 150 && color.green() < 60 && color.blue() < 60;
        }
    }
    return count;
}
