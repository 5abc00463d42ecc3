#include "drummingline.h"

#include "yrange.h"

#include "curve/angle.h"

double DrummingLine::markValue(const CurvePoint& point) const {
    return point.angle * AnglePlot::perDegree;
}

void DrummingLine::connect(const Vertex& from, const Vertex& to, CurveStep& step) const {
    if (areas().empty()) {
        connectByDistance(from, to, step);
        return;
    }
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
