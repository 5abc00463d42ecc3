#include "curvelayer.h"

#include <cmath>
#include <cstring>

namespace {

constexpr int bytesOfPixel = 4;

// How many pixels make a whole number of device pixels; 0 for more than 4.
int phasesOf(double ratio) {
    for (int phases = 1; phases <= 4; ++phases) {
        if (std::abs(ratio * phases - std::round(ratio * phases)) < 1e-9) {
            return phases;
        }
    }
    return 0;
}

double roundedUp(double value, int multiple) {
    return std::ceil(value / multiple) * multiple;
}

// How far the pixels of a line reach beyond its points.
double reachOf(const GraphOptions& options) {
    return std::max(options.curveOnSize, 1) / 2.0 + 2.0;
}

// The painter draws on device pixels from here on, with the widget's corner at 0, 0.
void useDevicePixels(QPainter& painter) {
    const QTransform device = painter.deviceTransform();
    const QTransform corner = QTransform::fromTranslate(std::floor(device.dx()), std::floor(device.dy()));
    painter.setWorldTransform(corner * device.inverted() * painter.worldTransform());
}

bool samePoint(const CurvePoint& a, const CurvePoint& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

bool CurveLayer::Key::fits(const Key& other) const {
    return device == other.device && scale.movedFrom(other.scale) && options == other.options &&
           item == other.item && offset == other.offset && stride == other.stride && front == other.front;
}

void CurveLayer::forget() {
    for (Picture& picture : m_pictures) {
        picture.key.reset();
    }
}

void CurveLayer::drawDirect(const CurveScene& scene, const CurveExtract& curve, const NormalLine& line) {
    for (const CurveSegment& segment : line.all()) {
        m_drawing.draw(scene.painter, scene.view, curve, scene.options, segment);
    }
}

void CurveLayer::draw(const CurveScene& scene, const CurveExtract& curve, double offset) {
    const NormalLine line(curve, scene.scale, offset);
    const QTransform transform = scene.painter.deviceTransform();
    const double ratio = transform.m11();
    const int phases =
        transform.type() <= QTransform::TxScale && ratio == transform.m22() ? phasesOf(ratio) : 0;
    const double reach = reachOf(scene.options);
    const double seam =
        line.lastChosen() ? roundedUp(line.column(line.walk().start) + reach, std::max(phases, 1)) : -1.0;
    if (phases == 0 || !(seam >= 0.0 && seam < scene.view.right())) {
        drawDirect(scene, curve, line);
        return;
    }
    const QSize size(int(std::ceil((scene.view.right() + reach) * ratio)) + 1,
                     int(std::ceil(scene.view.bottom() * ratio)) + 1);
    const Device device{
        ratio,
        {transform.dx() - std::floor(transform.dx()), transform.dy() - std::floor(transform.dy())},
        size};
    const Key key{device, scene.scale,        scene.options,        curve.item,
                  offset, line.walk().stride, &curve.points.front()};
    const std::int64_t phase = scene.scale.anchor() % phases;
    Picture& picture = m_pictures[std::size_t(phase < 0 ? phase + phases : phase)];
    update(picture, key, scene, curve, line);

    drawEntry(scene, curve, line, seam);
    const int from = int(std::lround(seam * ratio));
    scene.painter.save();
    useDevicePixels(scene.painter);
    scene.painter.drawImage(QPoint(from, 0), picture.image, QRect(QPoint(from, 0), size));
    scene.painter.restore();
    if (const auto tail = line.tail()) {
        m_drawing.draw(scene.painter, scene.view, curve, scene.options, *tail);
    }
}

void CurveLayer::drawEntry(const CurveScene& scene, const CurveExtract& curve, const NormalLine& line,
                           double seam) {
    QPainter& painter = scene.painter;
    const double ratio = painter.deviceTransform().m11();
    const double reach = reachOf(scene.options);
    painter.save();
    const QTransform world = painter.worldTransform();
    useDevicePixels(painter);
    painter.setClipRect(
        QRect(0, 0, int(std::lround(seam * ratio)), int(std::ceil(scene.view.bottom() * ratio)) + 1));
    painter.setWorldTransform(world);
    m_drawing.draw(painter, scene.view, curve, scene.options, line.entry());
    const CurveWalk walk = line.walk();
    for (std::size_t i = walk.start + walk.stride;
         i <= *line.lastChosen() && line.column(i - walk.stride) - reach < seam; i += walk.stride) {
        m_drawing.draw(painter, scene.view, curve, scene.options, line.segment(i));
    }
    painter.restore();
}

bool CurveLayer::scroll(Picture& picture, const Key& key, const CurveExtract& curve, std::size_t lastChosen) {
    if (!picture.key || !key.fits(*picture.key) || lastChosen < picture.lastDrawn ||
        !samePoint(curve.points.front(), picture.first) ||
        !samePoint(curve.points[picture.lastDrawn], picture.last)) {
        return false;
    }
    const std::int64_t shift = key.scale.anchor() - picture.key->scale.anchor();
    const auto pixels = std::int64_t(std::llround(double(shift) * key.device.ratio));
    if (pixels < 0 || pixels >= picture.image.width()) {
        return false;
    }
    if (pixels > 0) {
        const auto gone = std::size_t(pixels) * bytesOfPixel;
        const auto kept = std::size_t(picture.image.width()) * bytesOfPixel - gone;
        for (int y = 0; y < picture.image.height(); ++y) {
            uchar* row = picture.image.scanLine(y);
            std::memmove(row, row + gone, kept);
            std::memset(row + kept, 0, gone);
        }
    }
    return true;
}

void CurveLayer::update(Picture& picture, const Key& key, const CurveScene& scene, const CurveExtract& curve,
                        const NormalLine& line) {
    const std::size_t last = *line.lastChosen();
    if (!scroll(picture, key, curve, last)) {
        if (picture.image.size() != key.device.size) {
            picture.image = QImage(key.device.size, QImage::Format_ARGB32_Premultiplied);
        }
        picture.image.fill(Qt::transparent);
        picture.lastDrawn = line.walk().start;
        ++m_redraws;
    }
    QPainter painter(&picture.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(QTransform(key.device.ratio, 0.0, 0.0, key.device.ratio, key.device.fraction.x(),
                                    key.device.fraction.y()));
    const QRectF view = scene.view.adjusted(0.0, 0.0, reachOf(scene.options), 0.0);
    for (std::size_t i = picture.lastDrawn + key.stride; i <= last; i += key.stride) {
        m_drawing.draw(painter, view, curve, scene.options, line.segment(i));
    }
    picture.key = key;
    picture.lastDrawn = last;
    picture.first = curve.points.front();
    picture.last = curve.points[last];
}
