#pragma once

#include "areacolors.h"
#include "axislabels.h"
#include "countin.h"
#include "curvelayer.h"
#include "drawingthread.h"
#include "graphlayout.h"
#include "graphoptions.h"
#include "graphscale.h"
#include "labelcache.h"
#include "shiniicons.h"
#include "wavebars.h"
#include "windowpart.h"
#include "xrange.h"

#include "model/modelgraph.h"

#include <QBrush>
#include <QColor>
#include <QImage>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class Autoresize;
class ManagePhrasing;
class Mode;
class Performance;
class QCurve;
class QWDrawVinylPosition;
class QWPainterWav;
class RecordingLooperTraining;
class SaveColorPhrasing;
class Setting;
class Time;

/// The graph of one deck: what the hand does to the record, over time in sample frames of the deck, with the
/// live curve above a reference. It repaints at the pulse of the display. GUI thread; where the other deck's
/// graph repaints too, each of the two is drawn on a thread of its own, for which the GUI thread waits.
class QWPainter : public QWidget {
    Q_OBJECT
public:
    static constexpr int colorMenuWidth = 800; ///< pixels at the left that the open colour menu covers

    /// `secondaryName` is the item of the reference. Both stores are emptied and must outlive the graph.
    QWPainter(ModelGraph::EnumGraph deckName, ModelGraph::EnumGraph secondaryName,
              CurvePointStore& mainPoints, CurvePointStore& secondaryPoints, QWidget* parent);
    ~QWPainter() override;

    ModelGraph::EnumGraph deckName() const { return m_deckName; }
    QCurve* mainCurve() const { return m_mainCurve; }
    QCurve* secondaryCurve() const { return m_secondaryCurve; }
    /// The areas of the deck's record, on which the user works.
    ManagePhrasing* colorAreas() const { return m_colorAreas; }
    /// The pictures of the deck's sample.
    const QWPainterWav* wavePainter() const { return m_wavePainter; }
    /// The place in the list of the area that the needle was last in; -1 for none since the start. Followed
    /// while the phrasing display shows a sample.
    int currentArea() const { return m_currentArea; }
    GraphRange xRange() const { return m_x; }
    GraphRange yRange() const { return m_y; }
    const GraphLayout& layoutPixels() const { return m_layout; }
    int tagNumber() const { return m_tagNumber; }
    QString latencyText() const { return m_latencyText; }
    const CountIn& countIn() const { return m_countIn; }
    /// How many of its frames were drawn at the same time as the companion's, in that one's paint.
    unsigned drawnBeside() const { return m_drawnBeside; }

    /// Takes a range that is longer than a beat and shorter than 36000, and leaves the view where it is for
    /// any other. Returns the absolute span asked for.
    std::int64_t setXRange(FrameRange range);
    /// Shows the number over the graph, large at first; 0 ends the count.
    void showCountIn(int count);
    /// The other deck's graph, which lives as long. While both can be seen, hold waits until both records
    /// stand still, and the pulse draws them at the same time.
    void setCompanion(QWPainter* other) { m_companion = other; }
    /// Whether the deck's record has stood still for 0.2 s.
    bool recordStandsStill() const;
    /// Whether there is a record, and it hasn't stood still that long.
    bool recordMoves() const;
    /// Draws now what is left to draw of the sample's pictures, and that of the area under the needle: for a
    /// picture of a graph without pulse and event loop.
    void finishWavePictures();

Q_SIGNALS:
    void s_Resize();
    void s_PressLeftButton();
    /// A right press at this pixel of the graph; x is raised by colorMenuWidth while the colour page is open.
    void s_PressRightButton(int x, int y);
    /// Any button was released.
    void s_MouseReleaseEvent();
    /// The user has worked the visible range, with this result: frames of deck `name`.
    void s_XRange(ModelGraph::EnumGraph name, double xMin, double xMax);
    void s_EndSelectArea();
    void s_EndImportCurve_Secondary();
    /// modeAutoresize has run without a session; at every paint until the mode goes off.
    void s_EndAutoresize();
    void s_InitStart();
    /// A phrasing file was made for the colour menu.
    void s_newColorFile(QString path);

public Q_SLOTS:
    /// One pulse of the display: moves the cursor while a session runs and repaints.
    void refresh();
    void resetCurve_Secondary();
    void importCurve_Secondary(QString filename, bool load_bpm);
    /// Nothing repaints by itself: the next pulse shows it.
    void resetCurve_Main();
    /// Sets the ranges up for tempo, input and mode, with the cursor at 0, and starts anew.
    void initGraph();
    /// Another number of beats is to be shown: the range around the cursor changes and nothing more. A take
    /// that isn't followed any more stays in sight.
    void beatsChanged();
    /// Loads the pictures that depend on the style.
    void initIcon();
    void initStart();
    /// The graph plots something else. That changes layout and y range and nothing more: the stretch in view
    /// stays, and so do the points, during a session and behind it. A new start would empty the curve.
    void displayChanged();
    /// Fits the x range to all data.
    void modeAutoresize();
    /// Widens the two to the curve's first and last time; 0 and 0 are no range yet.
    void updateMinMaxFromCurve(int& currentMin, int& currentMax, QCurve* curve);
    void drawTagNumber_4();
    void drawTagNumber_3();
    void drawTagNumber_2();
    void drawTagNumber_1();
    void drawTagNumber_0();
    /// Takes the range of the graph of deck `name`, in that deck's frames. Sends nothing.
    void updateXRange(ModelGraph::EnumGraph name, double xMin, double xMax);
    /// Lays the graph out for its size and for what it shows.
    void refreshVariable();
    void ringBufferLatencyMs(double latencyMs, size_t maxFill, size_t capacity);
    /// Samples and points that the session had no room for: shown until the next start.
    void overflow(quint64 lost);
    /// Takes the areas that the deck shall show, and lays them over its sample.
    void refreshListManagePhrasing();
    /// The deck's sample or the areas have changed. The pictures of a new sample are drawn at once, what the
    /// areas change in them in between the events that follow.
    void generateWavPhrasing();
    /// Ask for a name in a dialog of the deck, one at a time, and write the areas into a file of the colour
    /// menu.
    void saveToColorFileA();
    void saveToColorFileB();
    /// Writes the areas into a new file. One that exists stays, and a message says so. `showMsg`: the colour
    /// menu is told of a file that it can read, and the user of what came of it.
    void createGRPXML(QString pathFilename, bool showMsg);
    void createGRPXML(QString pathFilename);
    /// The same for a bare name without extension, in the colour folder.
    void createGRPXMLFromDlg(QString pathFilename);
    /// Whether nothing comes from the device of input `name`: shown until the next start. Another input than
    /// this deck's doesn't count.
    void silentInput(ModelGraph::EnumGraph name, bool silent);
    /// This file couldn't be written, or not whole: shown until the next start.
    void notWritten(QString path);
    /// The device of input `name` isn't there: shown until the next start, a master's on both graphs.
    void missingDevice(ModelGraph::EnumGraph name, const QString& device);
    /// The sound server has gone: shown for good.
    void serverLost();
    /// A session starts: what went wrong in the last one isn't shown any more.
    void forgetTrouble();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    double beatLength() const;
    double sampleRate() const;
    void chooseWindow();
    FrameRange rangeInSight() const;
    void retranslate();
    void setTagNumber(int number);
    /// Asks for a range on the user's behalf and tells what came of it.
    void takeXRange(FrameRange range);
    /// Areas are shared: the other deck's keys may have moved them.
    void followAreas();
    void saveToColorFile(ModelGraph::EnumGraph deck, QPointer<SaveColorPhrasing>& dialog);

    // A paint: what is shared is settled on the GUI thread. Then that one draws or waits for the graph's own.
    void beginFrame();
    void drawFrame(QPainter& painter, GraphLabels& labels);
    /// Whether a paint event is for the window, not for another picture.
    bool paintsWindow() const;
    /// Whether the companion has to be painted in this paint of the window too.
    bool companionIsDue() const;
    void startDrawingOn(WindowPart part);
    void takePart(WindowPart part);
    void finishDrawing();

    // The steps of the two, in their order.
    bool followCursor();
    void collectExtremes();
    void chooseYRange();
    /// The logo on it is opaque: what lies below it isn't filled first.
    void drawGround(QPainter& painter, bool logo);
    void scaleLogo(double ratio);
    void followNeedle(const CurvePoint& needle);
    void wantWavePicture();
    void drawWave(QPainter& painter);
    void drawSideMarkers(QPainter& painter, const CurvePoint& main) const;
    void drawTagNumber(QPainter& painter) const;
    void drawBeatGrid(QPainter& painter, const GraphScale& scale, const GraphOptions& options,
                      const std::optional<LabelSpan>& cursorText, LabelCache& labels);
    /// What is told in red below the plot: what couldn't be written, line by line, and the gravest of the
    /// rest.
    QStringList troubles() const;
    void drawTrouble(QPainter& painter) const;
    void drawCurves(const CurveScene& scene);
    void drawCountIn(QPainter& painter) const;
    void holdScroll();

    Mode& m_mode;
    Time& m_time;
    Performance& m_performance;
    Autoresize& m_autoresize;
    RecordingLooperTraining& m_training;
    const Setting& m_setting;
    GraphOptionCache m_optionCache;
    const ModelGraph::EnumGraph m_deckName;
    ManagePhrasing* m_colorAreas;
    QCurve* m_secondaryCurve;
    QCurve* m_mainCurve;
    QWPainterWav* m_wavePainter;
    QWDrawVinylPosition* m_vinylPosition;
    QWPainter* m_companion = nullptr;

    GraphRange m_x;
    GraphRange m_y;
    QPoint m_mouseDownPoint; ///< the last left press and release, pixels
    QPoint m_mouseUpPoint;
    CursorWindow m_window; ///< where the x range lies relative to the cursor
    GraphLayout m_layout;
    double m_cursorTime = 0.0;
    std::uint64_t m_stillWindow = 0; ///< points of stillness that stop the scroll
    int m_tagNumber = 0;
    QString m_latencyText;
    quint64 m_lost = 0; ///< samples and points without room
    bool m_silent = false;
    QStringList m_notWritten; ///< paths
    QString m_missingDevice;
    bool m_serverLost = false;
    QImage m_logoSource;
    QImage m_logo; ///< the source on its ground, at the size and the pixel ratio of this graph
    QColor m_logoGround;
    QPointer<SaveColorPhrasing> m_saveDialogA;
    QPointer<SaveColorPhrasing> m_saveDialogB;
    int m_currentArea = -1;
    AreaColors m_areaColors; ///< of m_colorAreas, as of this paint
    ShiniIcons m_shiniIcons;
    GraphLabels m_labels;       ///< of the GUI thread
    GraphLabels m_threadLabels; ///< of the drawing thread
    WaveBars m_waveBars;
    CurveLayer m_secondaryLayer;
    CurveLayer m_mainLayer;
    CountIn m_countIn;
    QTimer m_countInTimer;
    bool m_following = false;  ///< the range of this frame is the cursor's
    QBrush m_ground;           ///< of this frame
    bool m_repaintDue = false; ///< the pulse has asked for one
    bool m_drawnAhead = false; ///< in the companion's paint; this graph's own one is still to come
    unsigned m_drawnBeside = 0;
    WindowPart m_part;
    std::unique_ptr<QPainter> m_partPainter;
    DrawingThread m_drawing; ///< the last member: it is the first to go
};
