#include "angleline.h"

#include "yrange.h"

#include "curve/angle.h"

#include <cmath>

double phrasingY(const CurvePoint& point, const AreaColors& areas) {
    const double angle = reducedAngle(point.rawAngle);
    if (const AreaColors::Area* area = areas.at(point.angle)) {
        const double span = area->span();
        return span == 0.0 ? 0.0 : (angle - area->start) / span * AnglePlot::height;
    }
    return areas.empty() ? angle * AnglePlot::perDegree : 0.0;
}

double drummingY(const CurvePoint& point) {
    return reducedAngle(point.rawAngle) * AnglePlot::perDegree;
}

double AngleLine::middle() const {
    return scale().mapY(AnglePlot::height / 2.0);
}

double AngleLine::columnBetween(const Vertex& from, const Vertex& to) const {
    const double before = points()[from.point].time;
    return scale().column(before + (points()[to.point].time - before) / 2.0);
}

QPointF AngleLine::topBetween(const Vertex& from, const Vertex& to) const {
    return {columnBetween(from, to), scale().mapY(AnglePlot::height)};
}

QPointF AngleLine::bottomBetween(const Vertex& from, const Vertex& to) const {
    return {columnBetween(from, to), scale().mapY(0.0)};
}

bool AngleLine::wrapsByDistance(const Vertex& from, const Vertex& to) const {
    return !(middle() > std::abs(from.pixel.y() - to.pixel.y()));
}

void AngleLine::connectByAngle(const Vertex& from, const Vertex& to, CurveStep& step) const {
    const double before = reducedAngle(points()[from.point].rawAngle);
    const double now = reducedAngle(points()[to.point].rawAngle);
    const bool forward = before > 270.0 && now < 90.0;
    const bool backward = before < 90.0 && now > 270.0;
    if (forward || backward) {
        addWrap(from, to, forward, step);
    } else {
        addPlain(from, to, step);
    }
}

void AngleLine::connectWithoutAreas(const Vertex& from, const Vertex& to, CurveStep& step) const {
    if (hasDirectWave()) {
        connectByAngle(from, to, step);
    } else if (wrapsByDistance(from, to)) {
        addWrap(from, to, low(to.pixel), step);
    } else {
        addPlain(from, to, step);
    }
}

void AngleLine::addWrap(const Vertex& from, const Vertex& to, bool forward, CurveStep& step) const {
    const QPointF top = topBetween(from, to);
    const QPointF bottom = bottomBetween(from, to);
    step.add(from.pixel, forward ? top : bottom, from.point);
    step.add(forward ? bottom : top, to.pixel, to.point);
}
