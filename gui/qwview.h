#pragma once

#include "curve/curvepointstore.h"
#include "model/modelgraph.h"
#include "model/modelinput.h"

#include <QKeySequence>
#include <QPointer>
#include <QString>
#include <QWidget>

class QWContextGraph;
class QWGridTool;
class QWPainter;
class RecordingLooperTraining;

/// The central widget: the two graphs above each other and the strip of controls below. It owns the keyboard
/// shortcuts and writes out the take; what it says with its signals the controller has wired to the workers.
/// GUI thread.
class QWView : public QWidget {
    Q_OBJECT
public:
    /// The stores of the live curves and of the references of both decks. They must outlive the view.
    QWView(CurvePointStore& mainA, CurvePointStore& secondaryA, CurvePointStore& mainB,
           CurvePointStore& secondaryB, QWidget* parent);

    QWPainter* painterDeckA() const { return m_painterDeckA; }
    QWPainter* painterDeckB() const { return m_painterDeckB; }
    QWGridTool* gridTool() const { return m_gridTool; }
    /// The graphs' menu of the last right press; null once it has been closed and deleted.
    QWContextGraph* contextGraph() const;

Q_SIGNALS:
    void s_Record();
    /// The window closes.
    void s_killApp();
    /// The display mode changed.
    void s_UpdateMode();

public Q_SLOTS:
    /// The end of the count-in: what belongs to the session starts.
    void playSound();
    void actionQuit();
    /// Pops the graphs' menu up at a right press, with the pixel as the graph that was pressed tells it.
    void contectGraphShow(int x, int y);
    /// Makes the graphs' menu anew, as it dies with its closing, and connects it.
    void createContexteMenu();
    /// A graph has fitted its range without a session: once is enough.
    void endAutoresize();
    /// Writes out the curves of a recorded session. Its streams have been ended, and their takes aren't
    /// written yet. Waits a quarter of a second for the last points of a stream that didn't come back in
    /// time; without a recording it does nothing and doesn't wait.
    void exportFile();
    /// The deck's sample rate or the tempo has changed.
    void updateBpmSamplerate(ModelGraph::EnumGraph name);
    void updateAllBpmSamplerate();
    /// Takes the style sheet of that name. One that can't be read changes nothing; at the start the first
    /// style stands in for it.
    void applyStyle(QString filename);
    /// Shows one graph, or both for every other value than A and B.
    void showInput(ModelInput::EnumInput input);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();
    void makeShortcuts();
    /// The five keys that work on the areas of a graph.
    void phrasingKeys(Qt::Key make, Qt::Key remove, const QWPainter* graph);
    template <typename Action> void shortcut(const QKeySequence& keys, Action action);

    QWPainter* m_painterDeckA = nullptr;
    QWPainter* m_painterDeckB = nullptr;
    QWGridTool* m_gridTool = nullptr;
    QPointer<QWContextGraph> m_contextGraph;
};
