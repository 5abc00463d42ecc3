#pragma once

#include "curveextremes.h"
#include "curvepointstore.h"
#include "model/modelgraph.h"

#include <QObject>
#include <QString>

class PathFile;
class Performance;
class RecordingLooperTraining;

/// A curve as the graph sees it: it searches, saves, loads and empties a point store that belongs to the
/// controller and that a decoder fills. The time axis is sample frames. GUI thread; read
/// by what draws the graph, too, for which that one waits.
class QCurve : public QObject {
    Q_OBJECT
public:
    /// Empties `points`; its memory stays. The store must outlive the curve.
    QCurve(ModelGraph::EnumGraph name, CurvePointStore& points, QObject* parent = nullptr);

    ModelGraph::EnumGraph graphName() const { return m_graphName; }
    /// The stretch of points that the last minMaxPosition named; both 0 after a reset.
    std::size_t firstVisible() const { return m_firstVisible; }
    std::size_t lastVisible() const { return m_lastVisible; }
    /// The points now: taken once by whoever walks them.
    CurvePointStore::View points() const { return m_points.view(); }
    CurvePointStore& store() { return m_points; }

    void resetCurve();

    /// Index of the first point at or after `time` (frames); the last index if all lie before it; 0 for a
    /// time below 1 or an empty curve.
    std::size_t findFirstIndex(std::int32_t time) const;
    /// Index before the first point at or after `time`; the last index if all lie before it; 0 for a time
    /// below 1, an empty curve or where the first point qualifies already. No mirror image of the other.
    std::size_t findLastIndex(std::int32_t time) const;
    /// The last point before `time`; the first point for a time below 1; zeros for an empty curve.
    CurvePoint pointAt(std::int32_t time) const;
    /// Smallest and largest position from the first visible point up to and not including the last, and which
    /// points these are. `found` is false, and the two stay untouched, where fewer than two points are
    /// visible. Asked at every paint: its time doesn't grow with the number of points, but for what was added
    /// since.
    void minMaxPosition(std::int32_t timeFrom, std::int32_t timeTo, double& min, double& max, bool& found);

    /// Writes "<recording folder>/<baseName>.grw": tempo, count and 23 bytes a point. Tells with
    /// s_NotWritten where that fails.
    void saveToFile(const QString& baseName);
    /// The same to any path. False if it can't be opened or written; a file without a whole point is taken
    /// away again.
    bool saveToPath(const QString& path) const;
    /// Replaces the content; what the former one took of the memory is given back. Points that the file
    /// promises and lacks read as zeros, up to one store block, and take no memory; a count beyond that
    /// counts as what the file holds. `loadBpm` takes over the tempo, unless it lies outside 20 to 400. Not
    /// while a stream feeds the store.
    void loadFromFile(const QString& fileName, bool loadBpm);

Q_SIGNALS:
    /// saveToFile couldn't write the curve, or not all of it, to this file.
    void s_NotWritten(QString path);

public Q_SLOTS:
    /// Joins the points taken before the first code to the first point with one. Not while a stream feeds the
    /// store.
    void initStartTimecode();

private:
    PathFile& m_pathFile;
    RecordingLooperTraining& m_recordingLooperTraining;
    ModelGraph::EnumGraph m_graphName;
    std::size_t m_firstVisible = 0;
    std::size_t m_lastVisible = 0;
    CurvePointStore& m_points;
    CurveExtremes m_extremes;
};
