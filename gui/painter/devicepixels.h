#pragma once

#include <QPainter>
#include <QRectF>
#include <QTransform>

#include <algorithm>
#include <cmath>

/// How a painter's pixels lie on the pixels of its device, of which a screen at 125 % has five for four. The
/// device may be scaled and moved, not turned.
class DevicePixels {
public:
    explicit DevicePixels(const QPainter& painter) : m_transform(painter.deviceTransform()) {}

    /// Device pixels a pixel.
    double ratio() const { return m_transform.m11(); }

    /// The border between two device pixels that lies next to a coordinate of the painter.
    double nearestX(double x) const { return nearest(x, m_transform.m11(), m_transform.dx()); }
    double nearestY(double y) const { return nearest(y, m_transform.m22(), m_transform.dy()); }

    /// The rectangle with each of its edges on such a border.
    QRectF nearest(const QRectF& rect) const {
        return {QPointF(nearestX(rect.left()), nearestY(rect.top())),
                QPointF(nearestX(rect.right()), nearestY(rect.bottom()))};
    }

    /// The device pixels of that rectangle, counted as OnDevicePixels does.
    QRect pixels(const QRectF& rect) const {
        const QRectF edges = nearest(rect);
        return {(edges.topLeft() * ratio() + fraction()).toPoint(), (edges.size() * ratio()).toSize()};
    }

    /// The whole device pixels that a line of that width covers, in the painter's coordinates: where they
    /// start and how many pixels they take. A line is never thinner than one of them.
    struct Breadth {
        double start;
        double size;
    };
    Breadth breadthX(double center, double width) const {
        return breadth(center, width, m_transform.m11(), m_transform.dx());
    }
    Breadth breadthY(double center, double width) const {
        return breadth(center, width, m_transform.m22(), m_transform.dy());
    }

    /// The whole device pixels of an upright line with square caps.
    QRectF upright(double x, double top, double bottom, double width) const {
        const Breadth across = breadthX(x, width);
        const double from = nearestY(top - width / 2.0);
        return {across.start, from, across.size, nearestY(bottom + width / 2.0) - from};
    }

    /// How far the painter's origin lies beyond the border between two device pixels that is next to it.
    QPointF fraction() const {
        return {m_transform.dx() - rounded(m_transform.dx()), m_transform.dy() - rounded(m_transform.dy())};
    }

private:
    static double rounded(double value) { return std::floor(value + 0.5); }
    static double nearest(double value, double scale, double offset) {
        return (rounded(value * scale + offset) - offset) / scale;
    }
    static Breadth breadth(double center, double width, double scale, double offset) {
        const double pixels = std::max(1.0, rounded(width * scale));
        return {(rounded(center * scale + offset - pixels / 2.0) - offset) / scale, pixels / scale};
    }

    QTransform m_transform;
};

/// While it lives the painter draws on whole device pixels, counted from the border next to where its origin
/// was: pictures are laid on them as they are. With nothing to smooth that is done at once; else the painter
/// mixes pixel by pixel, on several threads.
class OnDevicePixels {
public:
    explicit OnDevicePixels(QPainter& painter) : m_painter(painter) {
        painter.save();
        const QTransform device = painter.deviceTransform();
        const QTransform origin =
            QTransform::fromTranslate(std::floor(device.dx() + 0.5), std::floor(device.dy() + 0.5));
        painter.setWorldTransform(origin * device.inverted() * painter.worldTransform());
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform, false);
    }
    ~OnDevicePixels() { m_painter.restore(); }
    OnDevicePixels(const OnDevicePixels&) = delete;
    OnDevicePixels& operator=(const OnDevicePixels&) = delete;

private:
    QPainter& m_painter;
};
