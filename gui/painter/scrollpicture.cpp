#include "scrollpicture.h"

#include <algorithm>
#include <cmath>

namespace {

std::uint32_t* pixelsOf(QImage& image) {
    return reinterpret_cast<std::uint32_t*>(image.bits());
}

std::ptrdiff_t strideOf(const QImage& image) {
    return image.bytesPerLine() / 4;
}

} // namespace

void ScrollPicture::Tile::empty() {
    clear(0, image.width());
    top = image.height();
    bottom = 0;
    stale = false;
}

void ScrollPicture::Tile::clear(int from, int to) {
    const std::ptrdiff_t stride = strideOf(image);
    std::uint32_t* row = pixelsOf(image) + top * stride;
    for (int y = top; y < bottom; ++y, row += stride) {
        std::fill(row + from, row + to, 0U);
    }
}

void ScrollPicture::reset(QSize size) {
    if (m_size != size) {
        m_size = size;
        m_tiles.clear();
        m_tiles.resize(std::size_t(size.width() / tileWidth + 2));
        for (Tile& tile : m_tiles) {
            tile.image = QImage(tileWidth, size.height(), QImage::Format_ARGB32_Premultiplied);
            tile.bottom = size.height(); // a new image holds anything
        }
    }
    for (Tile& tile : m_tiles) {
        tile.stale = true;
    }
    m_first = 0;
    m_origin = 0;
}

void ScrollPicture::scroll(int columns) {
    m_origin += columns;
    for (; m_origin >= tileWidth; m_origin -= tileWidth) {
        tile(0).stale = true;
        m_first = int(std::size_t(m_first + 1) % m_tiles.size());
    }
}

void ScrollPicture::clearBefore(int to) {
    const int end = m_origin + std::max(to, 0);
    for (int place = 0; place < int(m_tiles.size()) && place * tileWidth < end; ++place) {
        Tile& cleared = tile(place);
        if (end >= (place + 1) * tileWidth) {
            cleared.stale = true;
        } else if (!cleared.stale) {
            // What has left at the left edge doesn't come back before the tile does, empty.
            cleared.clear(place == 0 ? m_origin : 0, end - place * tileWidth);
        }
    }
}

void ScrollPicture::draw(const Capsule& capsule, QRgb premultiplied, int to) {
    const int end = m_origin + std::min(to, m_size.width());
    const QRectF bounds = boundsOf(capsule);
    const double left = bounds.left() + m_origin;
    const double right = bounds.right() + m_origin;
    const double height = m_size.height();
    const int top = int(std::clamp(bounds.top(), 0.0, height));
    const int bottom = int(std::clamp(bounds.bottom(), 0.0, height));
    if (!(right > 0.0) || left >= end || top >= bottom) {
        return;
    }
    const int first = left > 0.0 ? int(left) / tileWidth : 0;
    const int last = int(std::min(right, double(end - 1))) / tileWidth;
    for (int place = first; place <= last; ++place) {
        Tile& drawn = tile(place);
        if (drawn.stale) {
            drawn.empty();
        }
        drawn.top = std::min(drawn.top, top);
        drawn.bottom = std::max(drawn.bottom, bottom);
        const int start = place * tileWidth;
        const CapsuleTarget target{pixelsOf(drawn.image),
                                   strideOf(drawn.image),
                                   place == 0 ? m_origin : 0,
                                   0,
                                   std::min(tileWidth, end - start),
                                   m_size.height(),
                                   m_origin - start,
                                   0};
        drawCapsule(target, capsule, premultiplied);
    }
}

void ScrollPicture::paintTo(QPainter& painter) const {
    for (int place = 0; place < int(m_tiles.size()); ++place) {
        const Tile& shown = tile(place);
        const int start = place * tileWidth - m_origin;
        const int from = std::max(-start, 0);
        const int to = std::min(m_size.width() - start, tileWidth);
        if (!shown.stale && from < to && shown.top < shown.bottom) {
            painter.drawImage(QPoint(start + from, shown.top), shown.image,
                              QRect(from, shown.top, to - from, shown.bottom - shown.top));
        }
    }
}
