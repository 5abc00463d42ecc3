#pragma once

#include <QImage>
#include <QPointF>

#include <optional>

class QWidget;

/// A widget's own part of its window's picture, to be drawn on beside the parts of other widgets. GUI thread.
struct WindowPart {
    QImage pixels;  ///< the window's own memory: good until the window is resized or goes
    QPointF corner; ///< of the widget on `pixels`, in its pixels; not 0 where it lies between device pixels
};

/// None where the window isn't kept in memory with four bytes a pixel, or the widget can't be seen whole.
/// Only to be drawn on during a paint of the window in which all of the widget is to be painted: what isn't
/// opaque above it is painted after it, where the window is.
std::optional<WindowPart> windowPart(const QWidget& widget);
