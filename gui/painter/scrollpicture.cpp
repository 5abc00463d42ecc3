#include "scrollpicture.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {

// Pixels at the end of a tile's rows. Rows of a power of two lie so in the processor's caches that steep
// lines take longer to draw.
constexpr int padding = 16;

std::uint32_t* pixelsOf(QImage& image) {
    return reinterpret_cast<std::uint32_t*>(image.bits());
}

std::ptrdiff_t strideOf(const QImage& image) {
    return image.bytesPerLine() / 4;
}

// What a painter draws on, in its coordinates; none if it does more than to lay pixels on those of an image.
std::optional<PixelTarget> pixelsOf(QPainter& painter) {
    QPaintDevice* const device = painter.device();
    const QTransform transform = painter.deviceTransform();
    if (device->devType() != QInternal::Image || transform.type() > QTransform::TxTranslate ||
        painter.hasClipping() || painter.opacity() != 1.0 ||
        painter.compositionMode() != QPainter::CompositionMode_SourceOver) {
        return std::nullopt;
    }
    const auto& image = static_cast<const QImage&>(*device);
    const int x = qRound(transform.dx());
    const int y = qRound(transform.dy());
    const auto onPixel = [](double at, int pixel) { return std::abs(at - pixel) < 1e-9; }; // but for rounding
    const bool fits =
        image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32_Premultiplied;
    if (!fits || !onPixel(transform.dx(), x) || !onPixel(transform.dy(), y)) {
        return std::nullopt;
    }
    // Not bits(): that would make a copy of a picture that is shared.
    auto* const first = reinterpret_cast<std::uint32_t*>(const_cast<uchar*>(image.constBits()));
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    return PixelTarget{first + y * stride + x, stride, -x, -y, image.width() - x, image.height() - y};
}

} // namespace

void ScrollPicture::Tile::empty() {
    clear(0, tileWidth);
    top = image.height();
    bottom = 0;
    stale = false;
    groups.clear();
    changed.reset();
    painted = false;
}

void ScrollPicture::Tile::clear(int from, int to) {
    const std::ptrdiff_t stride = strideOf(image);
    std::uint32_t* row = pixelsOf(image) + top * stride;
    for (int y = top; y < bottom; ++y, row += stride) {
        std::fill(row + from, row + to, 0U);
    }
    change(from, to);
}

void ScrollPicture::Tile::change(int from, int to) {
    for (int group = from / PixelGroups::size; group * PixelGroups::size < to; ++group) {
        changed.set(std::size_t(group));
    }
}

// Not if that is much of a picture that may not come again.
bool ScrollPicture::Tile::updateGroups() {
    if (!std::exchange(painted, true) && changed.count() > groupsOfTile / 4) {
        return false;
    }
    for (std::size_t group = 0; changed.any() && group < groupsOfTile; ++group) {
        if (changed.test(group)) {
            groups.update(pixelsOf(image), strideOf(image), int(group), top, bottom);
            changed.reset(group);
        }
    }
    return true;
}

void ScrollPicture::reset(QSize size) {
    if (m_size != size) {
        m_size = size;
        m_tiles.clear();
        m_tiles.resize(std::size_t(size.width() / tileWidth + 2));
        for (Tile& tile : m_tiles) {
            tile.image = QImage(tileWidth + padding, size.height(), QImage::Format_ARGB32_Premultiplied);
            tile.groups = PixelGroups(tileWidth, size.height());
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
        drawn.change(std::max(int(left) - start, 0), std::min(int(right) + 1 - start, tileWidth));
    }
}

void ScrollPicture::paintTo(QPainter& painter) {
    const auto target = pixelsOf(painter);
    for (int place = 0; place < int(m_tiles.size()); ++place) {
        Tile& shown = tile(place);
        const int start = place * tileWidth - m_origin;
        const int from = std::max(-start, 0);
        const int to = std::min(m_size.width() - start, tileWidth);
        if (shown.stale || from >= to || shown.top >= shown.bottom) {
            continue;
        }
        if (target && shown.updateGroups()) {
            const PixelTarget part{target->origin + start,
                                   target->stride,
                                   std::max(from, target->left - start),
                                   std::max(shown.top, target->top),
                                   std::min(to, target->right - start),
                                   std::min(shown.bottom, target->bottom)};
            if (part.left < part.right) {
                shown.groups.paint(pixelsOf(shown.image), strideOf(shown.image), part);
            }
        } else {
            painter.drawImage(QPoint(start + from, shown.top), shown.image,
                              QRect(from, shown.top, to - from, shown.bottom - shown.top));
        }
    }
}
