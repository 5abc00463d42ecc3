#include "wavebars.h"

#include "devicepixels.h"

#include <algorithm>
#include <cmath>

const QImage& WaveBars::scaled(const QImage& wave, QSize size, bool upright) {
    if (m_wave != wave.cacheKey() || m_scaled.size() != size || m_upright != upright) {
        const QImage turned = upright ? wave.transformed(QTransform().rotate(-90.0)) : wave;
        m_scaled = turned.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        m_wave = wave.cacheKey();
        m_upright = upright;
        ++m_scalings;
    }
    return m_scaled;
}

void WaveBars::drawUpright(QPainter& painter, const QImage& wave, const QRectF& bar) {
    const QRect pixels = DevicePixels(painter).pixels(bar);
    if (wave.isNull() || pixels.isEmpty()) {
        return;
    }
    const OnDevicePixels onPixels(painter);
    painter.drawImage(pixels.topLeft(), scaled(wave, pixels.size(), true));
}

void WaveBars::drawSplit(QPainter& painter, const QImage& wave, const QRectF& bar, double split) {
    const QRect pixels = DevicePixels(painter).pixels(bar);
    if (wave.isNull() || pixels.isEmpty()) {
        return;
    }
    const QImage& picture = scaled(wave, pixels.size(), false);
    const int before = std::clamp(int(std::lround(split * pixels.width())), 0, pixels.width());
    const int behind = pixels.width() - before;
    const OnDevicePixels onPixels(painter);
    painter.drawImage(pixels.topLeft(), picture, QRect(before, 0, behind, pixels.height()));
    painter.drawImage(pixels.topLeft() + QPoint(behind, 0), picture, QRect(0, 0, before, pixels.height()));
}
