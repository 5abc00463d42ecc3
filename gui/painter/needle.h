#pragma once

#include "curve/qcurve.h"
#include "model/wholenumber.h"

/// Where the needle of a curve stands at `time` (frames); `live`: where it is now. Zeros for a curve without
/// points.
inline CurvePoint needleAt(const QCurve& curve, double time, bool live) {
    const CurvePointStore::View points = curve.points();
    return live && !points.empty() ? points.back() : curve.pointAt(truncated(time));
}
