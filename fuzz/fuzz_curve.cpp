// The curve file's reader: what it reads can be searched, and survives being written and read again.

#include "curve/qcurve.h"
#include "model/constants.h"
#include "state/pathfile.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"

#include "fuzzfile.h"

#include <cmath>

namespace {

constexpr double tempoBefore = 84.0;

// Not a number equals itself here.
bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FuzzFile file;
    static const bool once = (useDataFolder(file.folder()), true);
    demand(once);
    static CurvePointStore store;
    static CurvePointStore again;
    static QCurve curve(ModelGraph::INPUT_1, store);
    static QCurve copy(ModelGraph::INPUT_2, again);
    RecordingLooperTraining& session = *Singleton::instance().recordingLooperTraining();

    session.setBpmValue(tempoBefore);
    session.setBpmEffective(tempoBefore);
    curve.loadFromFile(file.with(data, size), true);
    demand(session.bpmValue() >= Constant::Tempo::lowest && session.bpmValue() <= Constant::Tempo::highest);
    const CurvePointStore::View points = curve.points();
    demand(points.size() <= CurvePointStore::firstBlock && store.overflows() == 0);
    // Beyond its own points the file has zeros: the first of these and the last one stand for all.
    const std::size_t own = std::min(points.size(), size / 23 + 2);
    for (std::size_t i = 0; i < own; ++i) {
        demand(points[i].angle >= 0.0 && points[i].angle < 360.0);
        demand(points[i].direction >= 0 && points[i].direction <= 2 && points[i].soundOn <= 1);
    }
    demand(own == points.size() || (points[own].time == 0.0 && points.back().position == 0.0));
    for (std::size_t i = 0; i < std::min<std::size_t>(own, 8); ++i) {
        const auto time = static_cast<std::int32_t>(points[i].time);
        demand(curve.findFirstIndex(time) < points.size() && curve.findLastIndex(time) < points.size());
        curve.pointAt(time);
        double min = 0.0;
        double max = 0.0;
        bool found = false;
        curve.minMaxPosition(0, time, min, max, found);
        demand(!found || curve.lastVisible() < points.size());
    }
    curve.initStartTimecode();

    if (points.size() > 2 * own + 1000) {
        return 0; // millions of zeros needn't be written
    }
    const QString path = file.path(QStringLiteral("copy.grw"));
    demand(curve.saveToPath(path));
    copy.loadFromFile(path, false);
    const CurvePointStore::View read = copy.points();
    demand(read.size() == points.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        demand(read[i].time == points[i].time && same(read[i].position, points[i].position));
        demand(same(read[i].rawAngle, points[i].rawAngle) && read[i].direction == points[i].direction);
        demand(read[i].soundOn == points[i].soundOn);
    }
    return 0;
}
