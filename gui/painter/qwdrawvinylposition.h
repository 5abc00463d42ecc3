#pragma once

#include "areacolors.h"
#include "labelcache.h"
#include "slicewheel.h"

#include "curve/curvepoint.h"
#include "model/modelgraph.h"

#include <QImage>
#include <QRect>
#include <QWidget>

#include <vector>

class ManagePhrasing;
class Mode;
class QCurve;
class RecordingLooperTraining;

/// Where the name of the area stands that the reference's needle or the live one is in: below the disc, or
/// right of it on a graph whose plot ends above that line. Pixels of the graph.
QRect areaNamePlace(bool ofReference, double plotBottom);

/// A picture of the record in the graph's upper left corner: the areas as slices, and a needle for each curve
/// that shows where the record stands. It never shows by itself: the graph has it draw with its own painter.
/// While nothing moves, a frame costs one small blit; what moves is drawn straight into the picture.
/// draw() runs on the thread that draws the graph, the rest on the GUI thread.
class QWDrawVinylPosition : public QWidget {
    Q_OBJECT
public:
    /// Curves and areas are the graph's and must outlive the disc.
    QWDrawVinylPosition(const QCurve* mainCurve, const QCurve* secondaryCurve,
                        const ManagePhrasing* colorAreas, QWidget* owner);

    /// Where the records stand at `time` (frames); the main one where it is now, while a session runs.
    /// `rotate`: the slices turn and the main needle stays at the top, instead of the other way round.
    /// `plotBottom`: of the graph; the names of areas stand above it. `names`: those of the thread that calls
    /// this.
    void draw(QPainter& painter, double time, bool rotate, double plotBottom, LabelCache& names);

    /// How often the slices and the whole picture were built.
    unsigned discsBuilt() const { return m_discsBuilt; }
    unsigned picturesBuilt() const { return m_picturesBuilt; }

private:
    struct Position {
        CurvePoint point;
        bool soundOn; ///< of the point; true for a curve without points
    };
    /// What the picture shows.
    struct Look {
        double ratio = 0.0;
        double discTurn = 0.0; ///< degrees clockwise
        double mainTurn = 0.0;
        double secondaryTurn = 0.0;
        bool mainHead = false;
        bool secondary = false; ///< there is a needle of the reference
        bool operator==(const Look&) const = default;
    };

    static Position position(const QCurve& curve, double time, bool live);
    void update(const Look& look);
    void drawDisc(const Look& look);
    /// Puts the needles of this look in, and where those of the last one were what lies below them;
    /// `all`: slices or overlay are others too.
    void compose(const Look& look, bool all);
    /// The pixels of the picture that the needles may touch.
    QRect needlePixels(const Look& look) const;
    void drawAreaName(QPainter& painter, LabelCache& names, ModelGraph::EnumGraph item,
                      const Position& position, const QRect& place);

    const Mode& m_mode;
    const RecordingLooperTraining& m_training;
    const QCurve* m_mainCurve;
    const QCurve* m_secondaryCurve;
    const ManagePhrasing* m_colorAreas;
    SliceWheel m_wheel;
    QPoint m_corner;  ///< of the three pictures, device pixels from the graph's corner
    QImage m_disc;    ///< the slices and their marks
    QImage m_overlay; ///< hub and rim
    QImage m_picture; ///< all of it but the names
    Look m_look;      ///< that the picture has
    QRect m_needles;  ///< its pixels with needles
    std::vector<AreaColors::Area>
        m_areas; ///< that the slices have: they are shared with others who edit them
    bool m_discDirty = true;
    bool m_overlayDirty = true;
    unsigned m_discsBuilt = 0;
    unsigned m_picturesBuilt = 0;
};
