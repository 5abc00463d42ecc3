#pragma once

#include "shinimarks.h"

#include <QImage>

#include <array>

/// The pictures of the icons at a curve's cuts, at the pixel ratio of the screen they were last drawn on. One
/// that is missing is a null picture and draws nothing.
class ShiniIcons {
public:
    /// Reads the pictures from the program's resources.
    void load();
    /// Draws the marks on `painter`; they may lie anywhere.
    void draw(QPainter& painter, const std::vector<ShiniMark>& marks);

private:
    static constexpr std::size_t count = 6;
    void scaleTo(double ratio);

    std::array<QImage, count> m_sources;
    std::array<QImage, count> m_scaled;
    double m_ratio = 0.0; ///< of the scaled ones; 0: none
};
