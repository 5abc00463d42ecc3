#include "trackingfilter.h"

static_assert(TrackingFilter::bandTable[0] == 0.7 && TrackingFilter::bandTable[1] == 0.71640625 &&
              TrackingFilter::bandTable[128] == 2.8 && TrackingFilter::bandTable[255] == 4.88359375);

void TrackingFilter::forgetSpeed() {
    predictedSpeed = 0.0;
    acceleration = 0.0;
}

void TrackingFilter::clear() {
    forgetSpeed();
    lastSpeed = 0.0;
    fastTracking = false;
}
