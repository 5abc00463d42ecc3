#include "qwdrawvinylposition.h"

#include "convexshape.h"
#include "curvecolor.h"
#include "devicepixels.h"
#include "graphstyle.h"
#include "needle.h"

#include "curve/qcurve.h"
#include "phrasing/managephrasing.h"
#include "state/mode.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"

#include <QFont>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <span>
#include <utility>

namespace {

constexpr QRectF pictureRect(16.0, 16.0, 218.0, 218.0); // pixels of the graph: the rim and what looks out
constexpr QPointF center(125.0, 125.0);
constexpr double discRadius = 98.0; // the rim covers it from 93 to 107
constexpr double fullTurn = 360.0;
const QColor ground(43, 43, 43);

constexpr int nameLeft = 45;
constexpr int nameBeside = 245; // right of the disc
constexpr int nameTop = 230;
constexpr int nameLine = 30;
constexpr QSize nameSize(581, 41);
constexpr int namePoints = 15;

// Corners of a needle that points to the top.
constexpr std::array barCorners{QPointF(111.0, 24.0), QPointF(139.0, 24.0), QPointF(139.0, 125.0),
                                QPointF(111.0, 125.0)};
constexpr std::array headCorners{QPointF(111.0, 31.0), QPointF(125.0, 17.0), QPointF(139.0, 31.0)};

constexpr double markLength = 100.0;
constexpr double zeroBreadth = 3.0;
constexpr double dotLength = 2.0; // and as much as a pixel between two dots
constexpr double dotStep = 3.0;

/// The graph's pixels, turned clockwise about the disc's middle, on a picture's device pixels.
class Placing {
public:
    Placing(double degrees, double ratio) : m_ratio(ratio) {
        const double angle = degrees * std::numbers::pi / 180.0;
        m_sine = std::sin(angle);
        m_cosine = std::cos(angle);
    }
    QPointF operator()(QPointF at) const {
        const QPointF off = at - center;
        return QPointF(center.x() + off.x() * m_cosine - off.y() * m_sine,
                       center.y() + off.x() * m_sine + off.y() * m_cosine) *
               m_ratio;
    }
    double ratio() const { return m_ratio; }

private:
    double m_ratio;
    double m_sine;
    double m_cosine;
};

// A part of a picture whose corner lies at this device pixel of the graph.
CapsuleTarget partOf(QImage& picture, QPoint corner, const QRect& part) {
    return {reinterpret_cast<std::uint32_t*>(picture.bits()),
            picture.bytesPerLine() / 4,
            part.left(),
            part.top(),
            part.right() + 1,
            part.bottom() + 1,
            -corner.x(),
            -corner.y()};
}

CapsuleTarget whole(QImage& picture, QPoint corner) {
    return partOf(picture, corner, picture.rect());
}

void drawShape(const CapsuleTarget& target, const Placing& placing, std::span<const QPointF> corners,
               const QColor& fill, const QColor& outline) {
    std::array<QPointF, maxCorners> placed;
    std::transform(corners.begin(), corners.end(), placed.begin(), placing);
    drawConvexShape(target, std::span(placed).first(corners.size()), qPremultiply(fill.rgba()),
                    qPremultiply(outline.rgba()), placing.ratio());
}

// A piece of a mark: `from` to `to` pixels from the middle, towards the top.
void drawMark(const CapsuleTarget& target, const Placing& placing, double from, double to, double breadth) {
    const QRectF piece(center.x() - breadth / 2.0, center.y() - to, breadth, to - from);
    drawShape(target, placing,
              std::array{piece.topLeft(), piece.topRight(), piece.bottomRight(), piece.bottomLeft()},
              Qt::black, Qt::transparent);
}

// The mark at 0 degrees, and dots at each further quarter.
void drawDiscMarks(const CapsuleTarget& target, double turn, double ratio) {
    drawMark(target, Placing(turn, ratio), 0.0, markLength, zeroBreadth);
    for (const double quarter : {90.0, 180.0, 270.0}) {
        const Placing placing(turn + quarter, ratio);
        for (double at = 0.0; at < markLength; at += dotStep) {
            drawMark(target, placing, at, at + dotLength, 1.0);
        }
    }
}

// A part of a needle; `referenceAlpha` is that of a reference.
void drawNeedle(const CapsuleTarget& target, ModelGraph::EnumGraph item, std::span<const QPointF> corners,
                int referenceAlpha, const Placing& placing) {
    QColor outline = ground;
    outline.setAlpha(isReference(item) ? 150 : 100);
    drawShape(target, placing, corners, needleColor(item, referenceAlpha), outline);
}

void drawBar(const CapsuleTarget& target, ModelGraph::EnumGraph item, const Placing& placing) {
    drawNeedle(target, item, barCorners, 150, placing);
}

void drawHead(const CapsuleTarget& target, ModelGraph::EnumGraph item, const Placing& placing) {
    drawNeedle(target, item, headCorners, 100, placing);
}

// A tick of the rim; `degrees` clockwise from the top.
QLineF rimTick(double degrees) {
    constexpr double inner = 96.0;
    constexpr double outer = 104.0;
    constexpr double rounding = 1e-9; // of sine and cosine: the four main ticks lie on the axes
    const double angle = degrees * std::numbers::pi / 180.0;
    const auto at = [&](double radius) {
        return QPointF(std::trunc(center.x() + radius * std::sin(angle) + rounding),
                       std::trunc(center.y() - radius * std::cos(angle) + rounding));
    };
    return {at(inner), at(outer)};
}

// Hub and rim.
void drawOverlay(QPainter& painter) {
    painter.setPen(QPen(graphGrey, 2.0));
    painter.setBrush(graphGrey);
    painter.drawEllipse(QRect(QPoint(111, 111), QPoint(138, 138)));

    painter.setPen(QPen(graphGrey, 14.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QRect(QPoint(25, 25), QPoint(224, 224)));

    for (int quarter = 1; quarter <= 4; ++quarter) {
        painter.setPen(QPen(Qt::black, 3.0));
        painter.drawLine(rimTick(quarter * 90.0));
        painter.setPen(QPen(Qt::black, 1.0));
        painter.drawLine(rimTick(quarter * 90.0 - 45.0));
    }
}

} // namespace

QRect areaNamePlace(bool ofReference, double plotBottom) {
    const int bottom = int(std::floor(plotBottom));
    const bool below = nameTop + 2 * nameLine <= bottom;
    const int top = below ? nameTop : bottom - 2 * nameLine;
    return {QPoint(below ? nameLeft : nameBeside, ofReference ? top + nameLine : top), nameSize};
}

QWDrawVinylPosition::QWDrawVinylPosition(const QCurve* mainCurve, const QCurve* secondaryCurve,
                                         const ManagePhrasing* colorAreas, QWidget* owner)
    : QWidget(owner)
    , m_mode(*Singleton::instance().mode())
    , m_training(*Singleton::instance().recordingLooperTraining())
    , m_mainCurve(mainCurve)
    , m_secondaryCurve(secondaryCurve)
    , m_colorAreas(colorAreas) {
    hide(); // stays so when the graph is shown
}

void QWDrawVinylPosition::draw(QPainter& painter, double time, bool rotate, double plotBottom,
                               LabelCache& names) {
    const Position main = position(*m_mainCurve, time, m_mode.modeRun());
    const Position secondary = position(*m_secondaryCurve, time, false);
    const bool withSecondary = m_training.activatedMode() != ModelActivatedMode::Looper;
    update({DevicePixels(painter).ratio(), rotate ? fullTurn - main.point.angle : 0.0,
            rotate ? 0.0 : main.point.angle, secondary.point.angle, main.soundOn, withSecondary});
    {
        const OnDevicePixels onPixels(painter);
        painter.drawImage(m_corner, m_picture);
    }
    if (withSecondary && secondary.soundOn) {
        drawAreaName(painter, names, m_secondaryCurve->graphName(), secondary,
                     areaNamePlace(true, plotBottom));
    }
    if (main.soundOn) {
        drawAreaName(painter, names, m_mainCurve->graphName(), main, areaNamePlace(false, plotBottom));
    }
}

QWDrawVinylPosition::Position QWDrawVinylPosition::position(const QCurve& curve, double time, bool live) {
    const CurvePoint point = needleAt(curve, time, live);
    return {point, point.soundOn != 0 || curve.points().empty()};
}

void QWDrawVinylPosition::update(const Look& look) {
    if (look.ratio != m_look.ratio) {
        const QRect pixels =
            QRectF(pictureRect.topLeft() * look.ratio, pictureRect.size() * look.ratio).toAlignedRect();
        m_corner = pixels.topLeft();
        for (QImage* picture : {&m_disc, &m_overlay, &m_picture}) {
            *picture = QImage(pixels.size(), QImage::Format_ARGB32_Premultiplied);
        }
        m_discDirty = true;
        m_overlayDirty = true;
    }
    if (std::vector<AreaColors::Area> areas = AreaColors::listed(m_colorAreas->listPhrasing());
        areas != m_areas) {
        m_areas = std::move(areas);
        m_discDirty = true;
    }
    const bool turned = m_discDirty || look.discTurn != m_look.discTurn;
    const bool below = turned || m_overlayDirty; // what the needles don't change
    if (m_discDirty) {
        const QPhrasingList& areas = m_colorAreas->listPhrasing();
        m_wheel.build(areas, areas.isEmpty() ? ground : graphGrey, discRadius * look.ratio);
        ++m_discsBuilt;
    }
    if (turned) {
        drawDisc(look);
        m_discDirty = false;
    }
    if (m_overlayDirty) {
        m_overlay.fill(Qt::transparent);
        QPainter painter(&m_overlay);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(-m_corner);
        painter.scale(look.ratio, look.ratio);
        drawOverlay(painter);
        m_overlayDirty = false;
    }
    if (below || look != m_look) {
        compose(look, below);
        m_look = look;
        ++m_picturesBuilt;
    }
}

void QWDrawVinylPosition::drawDisc(const Look& look) {
    m_disc.fill(Qt::transparent);
    const QImage& wheel = m_wheel.turned(look.discTurn);
    const QPointF middle = center * look.ratio;
    QPainter(&m_disc).drawImage(
        QPoint(qRound(middle.x() - wheel.width() / 2.0), qRound(middle.y() - wheel.height() / 2.0)) -
            m_corner,
        wheel);
    drawDiscMarks(whole(m_disc, m_corner), look.discTurn, look.ratio);
}

QRect QWDrawVinylPosition::needlePixels(const Look& look) const {
    const double outline = 3.0 * look.ratio; // and how far it reaches beyond a pointed corner
    QRectF pixels;
    const auto add = [&](double turn) {
        const Placing placing(turn, look.ratio);
        for (const std::span<const QPointF> corners :
             {std::span<const QPointF>(barCorners), std::span<const QPointF>(headCorners)}) {
            for (const QPointF corner : corners) {
                pixels |= QRectF(placing(corner), QSizeF()).adjusted(-outline, -outline, outline, outline);
            }
        }
    };
    add(look.mainTurn);
    if (look.secondary) {
        add(look.secondaryTurn);
    }
    return pixels.toAlignedRect().translated(-m_corner) & m_picture.rect();
}

// From back to front.
void QWDrawVinylPosition::compose(const Look& look, bool all) {
    const QRect needles = needlePixels(look);
    const QRect part = all ? m_picture.rect() : needles | m_needles;
    m_needles = needles;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const std::ptrdiff_t from = std::ptrdiff_t(part.left()) * 4;
        std::memcpy(m_picture.scanLine(y) + from, m_disc.constScanLine(y) + from,
                    std::size_t(part.width()) * 4);
    }
    const CapsuleTarget target = partOf(m_picture, m_corner, part);
    const ModelGraph::EnumGraph main = m_mainCurve->graphName();
    const ModelGraph::EnumGraph secondary = m_secondaryCurve->graphName();
    const Placing mainPlacing(look.mainTurn, look.ratio);
    const Placing secondaryPlacing(look.secondaryTurn, look.ratio);
    if (look.secondary) {
        drawBar(target, secondary, secondaryPlacing);
    }
    drawBar(target, main, mainPlacing);
    QPainter(&m_picture).drawImage(part.topLeft(), m_overlay, part);
    if (look.secondary) {
        drawHead(target, secondary, secondaryPlacing);
    }
    if (look.mainHead) {
        drawHead(target, main, mainPlacing);
    }
}

void QWDrawVinylPosition::drawAreaName(QPainter& painter, LabelCache& names, ModelGraph::EnumGraph item,
                                       const Position& position, const QRect& place) {
    int index = -1;
    const QPhrasing* area = m_colorAreas->areaAt(position.point.angle, index);
    if (area == nullptr || area->label().isEmpty()) {
        return;
    }
    painter.save();
    QFont font = painter.font();
    font.setPointSize(namePoints);
    font.setWeight(QFont::Bold);
    font.setItalic(true);
    painter.setFont(font);
    painter.setPen(curveColorInArea(item, area->color()));
    painter.setClipRect(place, Qt::IntersectClip);
    names.draw(painter, place, Qt::AlignLeft, area->label());
    painter.restore();
}
