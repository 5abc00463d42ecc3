#include "curvelayer.h"

#include "devicepixels.h"
#include "shiniicons.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// How many pixels make a whole number of device pixels; 0 for more than `most`.
int phasesOf(double ratio, int most) {
    for (int phases = 1; phases <= most; ++phases) {
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
    constexpr int widestWave = 3;
    return std::max(options.curveOnSize, widestWave) / 2.0 + 2.0;
}

bool samePoint(const CurvePoint& a, const CurvePoint& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

Capsule CurveLayer::Device::placed(const Capsule& capsule) const {
    Capsule placed = capsule;
    placed.x1 = capsule.x1 * ratio + fraction.x();
    placed.y1 = capsule.y1 * ratio + fraction.y();
    placed.x2 = capsule.x2 * ratio + fraction.x();
    placed.y2 = capsule.y2 * ratio + fraction.y();
    placed.width = capsule.width * ratio;
    if (capsule.before) {
        placed.before = *capsule.before * ratio + fraction;
    }
    return placed;
}

bool CurveLayer::Key::fits(const Key& other) const {
    return device == other.device && scale.movedFrom(other.scale) && options == other.options &&
           display == other.display && item == other.item && offset == other.offset &&
           stride == other.stride && front == other.front && generation == other.generation &&
           colors == other.colors;
}

void CurveLayer::forget() {
    for (Picture& picture : m_pictures) {
        picture.key.reset();
    }
}

void CurveLayer::noteColors(const CurveScene& scene) {
    static const AreaColors none;
    const AreaColors& areas = scene.areas ? *scene.areas : none;
    if (!(areas == m_areas) ||
        !std::equal(scene.wavePairs.begin(), scene.wavePairs.end(), m_wavePairs.begin(), m_wavePairs.end())) {
        m_areas = areas;
        m_wavePairs.assign(scene.wavePairs.begin(), scene.wavePairs.end());
        ++m_colors;
    }
}

void CurveLayer::draw(const CurveScene& scene, const CurveExtract& curve, double offset) {
    const auto line = curveLine(scene, curve, offset);
    const QTransform transform = scene.painter.deviceTransform();
    const double ratio = transform.m11();
    // A painter that turns or shears isn't one of a screen.
    if (!line || transform.type() > QTransform::TxScale || ratio != transform.m22() || !(ratio > 0.0)) {
        return;
    }
    noteColors(scene);
    const double reach = reachOf(scene.options);
    const Device device{ratio,
                        DevicePixels(scene.painter).fraction(),
                        {int(std::ceil((scene.view.right() + reach) * ratio)) + 1,
                         int(std::ceil(scene.view.bottom() * ratio)) + 1}};
    StrokeChain chain;
    if (line->lastChosen()) {
        const int phases = phasesOf(ratio, maxPhases);
        const double seam = roundedUp(line->column(line->walk().start) + reach, std::max(phases, 1));
        const std::int64_t phase = phases > 0 ? scene.scale.anchor() % phases : 0;
        Picture& picture = m_pictures[std::size_t(phase < 0 ? phase + phases : phase)];
        if (phases == 0 || !(seam >= 0.0 && seam < scene.view.right())) {
            chain = drawAll(picture, device, scene, curve, *line);
        } else {
            chain = update(picture,
                           {device, scene.scale, scene.options, scene.display, curve.item, offset,
                            line->walk().stride, &curve.points.front(), curve.generation, m_colors},
                           scene, curve, *line);
            drawEntry(picture, device, scene, curve, *line, seam);
        }
        const OnDevicePixels pixels(scene.painter);
        picture.picture.paintTo(scene.painter);
    }
    drawTail(device, scene, curve, *line, chain);
    if (scene.icons) {
        scene.icons->draw(scene.painter, shiniMarks(*line, scene.options.shini, scene.reverse));
    }
}

void CurveLayer::drawStep(ScrollPicture& picture, const Device& device, const CurveScene& scene,
                          const CurveExtract& curve, const CurveStep& step, int end, StrokeChain& chain) {
    const auto draw = [&](const CurveStroke& stroke) {
        picture.draw(device.placed(stroke.capsule), stroke.color, end);
    };
    chain.add(m_drawing.strokes(scene, curve, step), draw);
}

StrokeChain CurveLayer::drawAll(Picture& picture, const Device& device, const CurveScene& scene,
                                const CurveExtract& curve, const CurveLine& line) {
    picture.key.reset();
    picture.picture.reset(device.size);
    const int end = device.size.width();
    StrokeChain chain;
    if (const auto entry = line.entry()) {
        drawStep(picture.picture, device, scene, curve, *entry, end, chain);
    }
    const CurveWalk walk = line.walk();
    for (std::size_t i = walk.start + walk.stride; i <= *line.lastChosen(); i += walk.stride) {
        drawStep(picture.picture, device, scene, curve, line.step(i), end, chain);
    }
    return chain;
}

void CurveLayer::drawEntry(Picture& picture, const Device& device, const CurveScene& scene,
                           const CurveExtract& curve, const CurveLine& line, double seam) {
    const int before = int(std::lround(seam * device.ratio));
    picture.picture.clearBefore(before);
    StrokeChain chain;
    if (const auto entry = line.entry()) {
        drawStep(picture.picture, device, scene, curve, *entry, before, chain);
    }
    const CurveWalk walk = line.walk();
    const double reach = reachOf(scene.options);
    for (std::size_t i = walk.start + walk.stride; i <= *line.lastChosen(); i += walk.stride) {
        drawStep(picture.picture, device, scene, curve, line.step(i), before, chain);
        if (line.column(i - walk.stride) - reach >= seam) {
            break; // it was one too many, but for the end before it, which may lie anywhere between two
                   // points
        }
    }
}

std::optional<CurveStroke> CurveLayer::lastStroke(const CurveScene& scene, const CurveExtract& curve,
                                                  const CurveLine& line, std::size_t point) {
    const auto step = point > line.walk().start ? line.step(point) : line.entry();
    return step ? m_drawing.strokes(scene, curve, *step).last() : std::nullopt;
}

// In a picture of its own, as large as its lines: the next paint has another tail.
void CurveLayer::drawTail(const Device& device, const CurveScene& scene, const CurveExtract& curve,
                          const CurveLine& line, StrokeChain chain) {
    std::vector<CurveStroke> strokes;
    const auto draw = [&](const CurveStroke& stroke) { strokes.push_back(stroke); };
    if (const auto tail = line.tail()) {
        for (const CurveStroke& stroke : m_drawing.strokes(scene, curve, *tail)) {
            chain.add(stroke, draw);
        }
    }
    chain.close(draw);
    QRectF covered;
    for (const CurveStroke& stroke : strokes) {
        covered |= boundsOf(device.placed(stroke.capsule));
    }
    const QRect area = covered.toAlignedRect() & QRect(QPoint(0, 0), device.size);
    if (area.isEmpty()) {
        return;
    }
    if (m_tail.width() < area.width() || m_tail.height() < area.height()) {
        m_tail = QImage(area.size().expandedTo(m_tail.size()), QImage::Format_ARGB32_Premultiplied);
    }
    CapsuleTarget target{reinterpret_cast<std::uint32_t*>(m_tail.bits()),
                         m_tail.bytesPerLine() / 4,
                         0,
                         0,
                         area.width(),
                         area.height(),
                         -area.x(),
                         -area.y()};
    for (int y = 0; y < area.height(); ++y) {
        std::uint32_t* row = target.pixels + y * target.stride;
        std::fill(row, row + area.width(), 0U);
    }
    for (const CurveStroke& stroke : strokes) {
        drawCapsule(target, device.placed(stroke.capsule), stroke.color);
    }
    const OnDevicePixels pixels(scene.painter);
    scene.painter.drawImage(area.topLeft(), m_tail, QRect(QPoint(0, 0), area.size()));
}

bool CurveLayer::scroll(Picture& picture, const Key& key, const CurveExtract& curve, std::size_t lastChosen) {
    if (!picture.key || !key.fits(*picture.key) || lastChosen < picture.lastDrawn ||
        !samePoint(curve.points.front(), picture.first) ||
        !samePoint(curve.points[picture.lastDrawn], picture.last)) {
        return false;
    }
    const std::int64_t shift = key.scale.anchor() - picture.key->scale.anchor();
    const auto pixels = std::int64_t(std::llround(double(shift) * key.device.ratio));
    if (pixels < 0 || pixels >= picture.picture.size().width()) {
        return false;
    }
    picture.picture.scroll(int(pixels));
    return true;
}

StrokeChain CurveLayer::update(Picture& picture, const Key& key, const CurveScene& scene,
                               const CurveExtract& curve, const CurveLine& line) {
    const std::size_t last = *line.lastChosen();
    if (!scroll(picture, key, curve, last)) {
        picture.picture.reset(key.device.size);
        picture.lastDrawn = line.walk().start;
        ++m_redraws;
    }
    const int end = key.device.size.width();
    StrokeChain chain(lastStroke(scene, curve, line, picture.lastDrawn));
    for (std::size_t i = picture.lastDrawn + key.stride; i <= last; i += key.stride) {
        drawStep(picture.picture, key.device, scene, curve, line.step(i), end, chain);
    }
    picture.key = key;
    picture.lastDrawn = last;
    picture.first = curve.points.front();
    picture.last = curve.points[last];
    return chain;
}
