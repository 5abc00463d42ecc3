#pragma once

#include "phrasing/qphrasing.h"

#include <QImage>

#include <cstdint>
#include <vector>

/// A disc of coloured slices that turns at every frame. Each of its pixels knows the angle at which it
/// stands, and a table knows the colour of each angle: to turn it, the pixels look their colours up a few
/// entries further on. That takes a tenth of the time of turning a picture.
class SliceWheel {
public:
    /// `radius` in device pixels. The edge is left rough. Where areas overlap the later one is seen.
    void build(const QPhrasingList& areas, const QColor& ground, double radius);
    /// The wheel turned clockwise; transparent outside. Good until the next call.
    const QImage& turned(double degrees);

private:
    // 4096 steps a turn: a turned wheel stands wrong by 0.07 pixels at most where it is 90 pixels wide.
    static constexpr int angleBits = 12;
    static constexpr std::uint16_t angleMask = (1U << angleBits) - 1U;
    static constexpr int angles = 1 << angleBits;
    static constexpr int rings = 4;

    struct Row {
        int first; ///< pixels of the row that belong to the wheel
        int count;
    };

    void place(double radius);
    void color(const QPhrasingList& areas, QRgb ground, double radius);

    QImage m_image;
    std::vector<Row> m_rows;
    std::vector<std::uint16_t> m_places; ///< of the rows' pixels: ring and, in the lower bits, angle
    std::vector<QRgb> m_colors;          ///< of each ring's angles
    int m_shown = -1;                    ///< the turn that the image shows, in steps
};
