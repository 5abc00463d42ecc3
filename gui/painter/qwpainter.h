#pragma once

#include "countin.h"
#include "curvelayer.h"
#include "graphlayout.h"
#include "graphoptions.h"
#include "graphscale.h"
#include "xrange.h"

#include "model/modelgraph.h"

#include <QPixmap>
#include <QString>
#include <QTimer>
#include <QWidget>

class Autoresize;
class Mode;
class Performance;
class QCurve;
class RecordingLooperTraining;
class Setting;
class Time;

/// The graph of one deck: what the hand does to the record, over time in sample frames of the deck, with the
/// live curve above a reference. It repaints at the pulse of the display. GUI thread.
class QWPainter : public QWidget {
    Q_OBJECT
public:
    /// `secondaryName` is the item of the reference. Both stores are emptied and must outlive the graph.
    QWPainter(ModelGraph::EnumGraph deckName, ModelGraph::EnumGraph secondaryName,
              CurvePointStore& mainPoints, CurvePointStore& secondaryPoints, QWidget* parent);

    ModelGraph::EnumGraph deckName() const { return m_deckName; }
    QCurve* mainCurve() const { return m_mainCurve; }
    QCurve* secondaryCurve() const { return m_secondaryCurve; }
    GraphRange xRange() const { return m_x; }
    GraphRange yRange() const { return m_y; }
    const GraphLayout& layoutPixels() const { return m_layout; }
    int tagNumber() const { return m_tagNumber; }
    QString latencyText() const { return m_latencyText; }
    const CountIn& countIn() const { return m_countIn; }

    /// Takes a range that is longer than a beat and shorter than 36000, and leaves the view where it is for
    /// any other. Returns the absolute span asked for.
    std::int64_t setXRange(FrameRange range);
    /// Shows the number over the graph, large at first; 0 ends the count.
    void showCountIn(int count);
    /// The other deck's graph. While both can be seen, hold waits until both records stand still.
    void setCompanion(const QWPainter* other) { m_companion = other; }
    /// Whether the deck's record has stood still for 0.2 s.
    bool recordStandsStill() const;

Q_SIGNALS:
    void s_Resize();
    void s_EndImportCurve_Secondary();
    void s_EndAutoresize();
    void s_InitStart();

public Q_SLOTS:
    /// One pulse of the display: moves the cursor while a session runs and repaints.
    void refresh();
    void resetCurve_Secondary();
    void importCurve_Secondary(QString filename, bool load_bpm);
    /// Nothing repaints by itself: the next pulse shows it.
    void resetCurve_Main();
    /// Sets the ranges up for tempo, input and mode.
    void initGraph();
    /// Loads the pictures that depend on the style.
    void initIcon();
    void initStart();
    /// Fits the x range to all data.
    void modeAutoresize();
    /// Widens the two to the curve's first and last time; 0 and 0 are no range yet.
    void updateMinMaxFromCurve(int& currentMin, int& currentMax, QCurve* curve);
    void drawTagNumber_4();
    void drawTagNumber_3();
    void drawTagNumber_2();
    void drawTagNumber_1();
    void drawTagNumber_0();
    /// Lays the graph out for its size and for what it shows.
    void refreshVariable();
    void ringBufferLatencyMs(double latencyMs, size_t maxFill, size_t capacity);
    /// Samples and points that the session had no room for: shown until the next start.
    void overflow(quint64 lost);
    /// Whether nothing comes from the device of input `name`: shown until the next start. Another input than
    /// this deck's doesn't count.
    void silentInput(ModelGraph::EnumGraph name, bool silent);
    /// A session starts: what went wrong in the last one isn't shown any more.
    void forgetTrouble();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    double beatLength() const;
    double sampleRate() const;
    void retranslate();
    void setTagNumber(int number);

    // The steps of a paint, in their order.
    bool followCursor();
    void collectExtremes();
    void chooseYRange();
    void drawLogo(QPainter& painter);
    void drawTagNumber(QPainter& painter) const;
    void drawLatency(QPainter& painter) const; ///< one of the labels that go with the grid
    void drawTrouble(QPainter& painter) const;
    void drawCurves(const CurveScene& scene);
    void drawCursor(QPainter& painter, const GraphScale& scale) const;
    void holdScroll();
    void drawCountIn(QPainter& painter) const;

    Mode& m_mode;
    Time& m_time;
    Performance& m_performance;
    Autoresize& m_autoresize;
    RecordingLooperTraining& m_training;
    const Setting& m_setting;
    GraphOptionCache m_optionCache;
    const ModelGraph::EnumGraph m_deckName;
    QCurve* m_secondaryCurve;
    QCurve* m_mainCurve;
    const QWPainter* m_companion = nullptr;

    GraphRange m_x;
    GraphRange m_y;
    CursorWindow m_window; ///< where the x range lies relative to the cursor
    GraphLayout m_layout;
    double m_cursorTime = 0.0;
    std::uint64_t m_stillWindow = 0; ///< points of stillness that stop the scroll
    int m_tagNumber = 0;
    QString m_latencyText;
    quint64 m_lost = 0; ///< samples and points without room
    bool m_silent = false;
    QPixmap m_logoSource;
    QPixmap m_logo; ///< the source at the size and the pixel ratio of this graph
    CurveLayer m_secondaryLayer;
    CurveLayer m_mainLayer;
    CountIn m_countIn;
    QTimer m_countInTimer;
};
