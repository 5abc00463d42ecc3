#include "drummingline.h"

#include "yrange.h"

double DrummingLine::markValue(const CurvePoint& point) const {
    return point.angle * AnglePlot::perDegree;
}

void DrummingLine::connect(const Vertex& from, const Vertex& to, CurveStep& step) const {
    if (areas().empty()) {
        connectWithoutAreas(from, to, step);
    } else {
        connectByAngle(from, to, step);
    }
}
