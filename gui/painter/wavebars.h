#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

/// Draws the picture of a wave as a bar, whole device pixels large. What it was scaled to is kept: while the
/// record turns a frame costs one blit.
class WaveBars {
public:
    /// Turned by a quarter: the wave's start lies at the lower edge of `bar`. A null picture draws nothing.
    void drawUpright(QPainter& painter, const QImage& wave, const QRectF& bar);
    /// Level, with the share `split` of the picture, which lies left of the bar's start, put on at its end.
    void drawSplit(QPainter& painter, const QImage& wave, const QRectF& bar, double split);
    /// How often a picture was scaled.
    unsigned scalings() const { return m_scalings; }

private:
    const QImage& scaled(const QImage& wave, QSize size, bool upright);

    QImage m_scaled;
    qint64 m_wave = 0; ///< QImage::cacheKey of what m_scaled shows
    bool m_upright = false;
    unsigned m_scalings = 0;
};
