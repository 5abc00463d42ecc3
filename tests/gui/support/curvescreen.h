#pragma once
// Pictures of one curve, on screens of any pixel ratio.

#include "gui/support/curves.h"
#include "painter/curvelayer.h"
#include "painter/shiniicons.h"
#include "painter/shinimarks.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <optional>
#include <vector>

/// A curve that is thick where it sounds and thin where not.
inline GraphOptions thickAndThin() {
    GraphOptions options;
    options.curveOnSize = 8;
    options.curveCrossFaderOff = true;
    return options;
}

/// What is drawn beside the points.
struct CurveLook {
    GraphOptions options = thickAndThin();
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    AreaColors areas{};
    std::vector<WavePair> wavePairs{};
    ShiniIcons* icons = nullptr;
    bool reverse = false;
};

/// A piece of a screen with that pixel ratio, on which the graph's corner lies at `corner`.
struct CurveScreen {
    static constexpr int width = 700; ///< of the graph, pixels
    static constexpr int height = 300;
    static constexpr double span = 300000.0; ///< frames shown

    double ratio = 1.0;
    QPointF corner{};

    static GraphScale scaleAt(double cursor, bool following = true, GraphRange y = {-1100.0, 1100.0}) {
        const double xMin = std::trunc(cursor - 0.96 * span);
        return {GraphLayout::of(width, height, false, false), {xMin, xMin + span}, y, following};
    }
    /// The scale of the look's display.
    static GraphScale scaleAt(double cursor, const CurveLook& look, bool following = true) {
        return scaleAt(cursor, following,
                       look.display == ModelDisplay::NORMAL ? GraphRange{-1100.0, 1100.0}
                                                            : GraphRange{0.0, 1000000.0});
    }
    /// What the scale shows of the curve.
    static std::optional<CurveExtract> extractAt(const CurvePointStore& store, const GraphScale& scale) {
        const auto points = store.view();
        std::size_t first = 0;
        while (first + 1 < points.size() && points[first].time < scale.x().min) {
            ++first;
        }
        std::size_t last = points.size() - 1;
        while (last > first && points[last].time >= scale.x().max) {
            --last;
        }
        const auto stretch = curveStretch(points, first, last);
        return stretch ? std::optional(
                             CurveExtract{ModelGraph::INPUT_DECKA, points, *stretch, store.generation()})
                       : std::nullopt;
    }

    template <typename Draw> QImage draw(const GraphScale& scale, const CurveLook& look, Draw draw) const {
        QImage image(int(std::ceil(width * ratio)) + 20, int(std::ceil(height * ratio)) + 20,
                     QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(QColor(43, 43, 43));
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(corner);
        draw(CurveScene{painter, scale, look.options, QRectF(0, 0, width, height), look.display, &look.areas,
                        look.wavePairs, look.icons, look.reverse});
        return image;
    }
    QImage empty(const GraphScale& scale) const {
        return draw(scale, {}, [](const CurveScene&) {});
    }
    QImage layered(CurveLayer& layer, const CurvePointStore& store, const GraphScale& scale,
                   const CurveLook& look = {}) const {
        return draw(scale, look, [&](const CurveScene& scene) {
            if (const auto curve = extractAt(store, scale)) {
                layer.draw(scene, *curve, 0.0);
            }
        });
    }
    QImage fromScratch(const CurvePointStore& store, const GraphScale& scale,
                       const CurveLook& look = {}) const {
        CurveLayer fresh;
        return layered(fresh, store, scale, look);
    }
    /// One chain of strokes from the first to the last. Without marks, on a screen of ratio 1.
    static QImage chained(const CurvePointStore& store, const GraphScale& scale, const CurveLook& look) {
        return CurveScreen().draw(scale, look, [&](const CurveScene& scene) {
            const auto curve = extractAt(store, scale);
            const auto line = curveLine(scene, *curve, 0.0);
            QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
            picture.fill(Qt::transparent);
            const CapsuleTarget target{reinterpret_cast<std::uint32_t*>(picture.bits()),
                                       picture.bytesPerLine() / 4,
                                       0,
                                       0,
                                       width,
                                       height,
                                       0,
                                       0};
            const auto draw = [&](const CurveStroke& stroke) {
                drawCapsule(target, stroke.capsule, stroke.color);
            };
            CurveDrawing drawing;
            StrokeChain chain;
            for (const CurveStep& step : line->all()) {
                chain.add(drawing.strokes(scene, *curve, step), draw);
            }
            chain.close(draw);
            scene.painter.drawImage(0, 0, picture);
        });
    }
    /// Each line by the painter, straight onto the screen; then the marks.
    QImage direct(const CurvePointStore& store, const GraphScale& scale, const CurveLook& look = {}) const {
        return draw(scale, look, [&](const CurveScene& scene) {
            CurveDrawing drawing;
            const auto curve = extractAt(store, scale);
            const auto line = curveLine(scene, *curve, 0.0);
            for (const CurveStep& step : line->all()) {
                for (const CurveStroke& stroke : drawing.strokes(scene, *curve, step)) {
                    const Capsule& capsule = stroke.capsule;
                    scene.painter.setPen(QPen(QColor::fromRgba(qUnpremultiply(stroke.color)), capsule.width,
                                              Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
                    scene.painter.drawLine(QLineF(capsule.x1, capsule.y1, capsule.x2, capsule.y2));
                }
            }
            if (look.icons) {
                look.icons->draw(scene.painter, shiniMarks(*line, look.options.shini, look.reverse));
            }
        });
    }
};
