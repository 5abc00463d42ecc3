#include "qcurve.h"

#include "curvesearch.h"
#include "state/pathfile.h"
#include "state/recordingloopertraining.h"
#include "state/singleton.h"

#include <QDir>

#include <algorithm>

namespace {

std::size_t firstAtOrAfter(const CurvePointStore::View& points, std::int32_t time) {
    if (time < 1 || points.empty()) {
        return 0;
    }
    return std::min(pointsBefore(points, time), points.size() - 1);
}

std::size_t lastBefore(const CurvePointStore::View& points, std::int32_t time) {
    if (time < 1 || points.empty()) {
        return 0;
    }
    const std::size_t before = pointsBefore(points, time);
    return before == 0 ? 0 : before - 1;
}

} // namespace

QCurve::QCurve(ModelGraph::EnumGraph name, CurvePointStore& points, QObject* parent)
    : QObject(parent)
    , m_pathFile(*Singleton::instance().pathFile())
    , m_recordingLooperTraining(*Singleton::instance().recordingLooperTraining())
    , m_graphName(name)
    , m_points(points) {
    m_points.clear();
}

void QCurve::resetCurve() {
    m_points.clear();
    m_firstVisible = 0;
    m_lastVisible = 0;
}

std::size_t QCurve::findFirstIndex(std::int32_t time) const {
    return firstAtOrAfter(points(), time);
}

std::size_t QCurve::findLastIndex(std::int32_t time) const {
    return lastBefore(points(), time);
}

CurvePoint QCurve::pointAt(std::int32_t time) const {
    const CurvePointStore::View all = points();
    return all.empty() ? CurvePoint() : all[lastBefore(all, time)];
}

void QCurve::minMaxPosition(std::int32_t timeFrom, std::int32_t timeTo, double& min, double& max,
                            bool& found) {
    found = false;
    const CurvePointStore::View all = points();
    if (all.empty()) {
        return;
    }
    m_firstVisible = firstAtOrAfter(all, timeFrom);
    m_lastVisible = lastBefore(all, timeTo);
    if (m_firstVisible >= m_lastVisible || m_lastVisible > all.size()) {
        return;
    }
    const CurveExtremes::Extremes extremes =
        m_extremes.over(all, m_points.generation(), m_firstVisible, m_lastVisible);
    min = extremes.min;
    max = extremes.max;
    found = true;
}

void QCurve::saveToFile(const QString& baseName) {
    const QDir folder(m_pathFile.pathDirectoryRecording());
    const QString path = folder.filePath(QStringLiteral("%1.grw").arg(baseName));
    if (!saveToPath(path)) {
        Q_EMIT s_NotWritten(path);
    }
}

void QCurve::initStartTimecode() {
    const CurvePointStore::View all = points();
    if (all.size() < 2 || all.front().timecode != -1 || all.back().timecode <= 0) {
        return;
    }
    std::size_t last = all.size() - 1;
    while (last > 0 && all[last].timecode != -1) {
        --last;
    }
    if (last == 0) {
        return;
    }
    const double deltaPosition = double(all[last + 1].timecode) - all[last].position;
    const double deltaAngle = all[last + 1].angle - all[last].angle;
    m_points.amend([&](std::size_t, CurvePoint& point) {
        if (point.timecode != -1) {
            return false;
        }
        point.position += deltaPosition;
        point.angle += deltaAngle;
        point.timecode = static_cast<std::int32_t>(deltaPosition);
        return true;
    });
}
