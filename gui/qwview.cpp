#include "qwview.h"

#include "button/qb2push.h"
#include "menu/qwcontextgraph.h"
#include "menu/qwgridtool.h"
#include "painter/qwpainter.h"

#include "curve/qcurve.h"
#include "model/constants.h"
#include "model/enumtext.h"
#include "model/modelstyle.h"
#include "phrasing/managephrasing.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/storedperformance.h"

#include <QCloseEvent>
#include <QFile>
#include <QGridLayout>
#include <QShortcut>
#include <QThread>
#include <QVBoxLayout>

namespace {

constexpr int lastPointsMs = 250;

// The curve of a deck that takes part in the recording. A deck without a device has no file name, and a
// nameless file would stray; one whose device was silent has nothing to save.
void saveCurve(const QWPainter& graph, const QString& baseName) {
    const bool hasDevice =
        !Singleton::instance().performance()->sample(graph.deckName())->deviceName().isEmpty();
    if (hasDevice && !baseName.isEmpty() && !graph.mainCurve()->points().empty()) {
        graph.mainCurve()->saveToFile(baseName);
    }
}

} // namespace

QWView::QWView(CurvePointStore& mainA, CurvePointStore& secondaryA, CurvePointStore& mainB,
               CurvePointStore& secondaryB, QWidget* parent)
    : QWidget(parent) {
    setAttribute(Qt::WA_StyledBackground);
    Singleton& shared = Singleton::instance();
    Setting& setting = *shared.setting();
    // The graphs and the timers that follow need these numbers.
    applyStoredPerformance(setting, *shared.performance());
    setting.applyLanguage(setting.language());
    applyStyle(setting.style());

    m_gridTool = new QWGridTool(this);
    m_painterDeckA = new QWPainter(ModelGraph::INPUT_DECKA, ModelGraph::INPUT_1, mainA, secondaryA, this);
    m_painterDeckB = new QWPainter(ModelGraph::INPUT_DECKB, ModelGraph::INPUT_2, mainB, secondaryB, this);
    m_painterDeckA->setCompanion(m_painterDeckB);
    m_painterDeckB->setCompanion(m_painterDeckA);
    layOut();
    makeShortcuts();

    connect(&setting, &Setting::s_updateStyle, this, &QWView::applyStyle);
    connect(shared.mode(), &Mode::s_ModeDisplayChanged, this, &QWView::s_UpdateMode);
    for (QWPainter* graph : {m_painterDeckA, m_painterDeckB}) {
        connect(&setting, &Setting::s_updateStyle, graph, &QWPainter::initIcon);
        connect(shared.mode(), &Mode::s_ModeDisplayChanged, graph, &QWPainter::displayChanged);
        connect(graph, &QWPainter::s_PressRightButton, this, &QWView::contectGraphShow);
    }
    if (window() != this) {
        window()->installEventFilter(this);
    }
    show();
}

void QWView::layOut() {
    setMinimumSize(1200, 600);

    auto* graphs = new QVBoxLayout;
    graphs->setContentsMargins(0, 0, 0, 0);
    graphs->addWidget(m_painterDeckA);
    graphs->addWidget(m_painterDeckB);
    m_painterDeckB->hide();

    // Columns 0 and 1 of the first row are the menu's.
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addLayout(graphs, 0, 2);
    grid->addWidget(m_gridTool, 1, 0, 1, 3);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(0, 1);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addLayout(grid);
}

template <typename Action> void QWView::shortcut(const QKeySequence& keys, Action action) {
    auto* key = new QShortcut(keys, this);
    key->setAutoRepeat(false); // a key held down is one press
    connect(key, &QShortcut::activated, this, action);
}

void QWView::makeShortcuts() {
    Singleton& shared = Singleton::instance();
    shortcut(Qt::Key_Space, [this] { m_gridTool->playButton()->click(); });
    for (const Qt::Key key : {Qt::Key_Enter, Qt::Key_Return}) {
        shortcut(key, [&shared] { shared.calculVinylDeltaPositionA(); });
    }
    shortcut(Qt::Key_Backspace, [&shared] { shared.calculVinylDeltaPositionB(); });

    phrasingKeys(Qt::Key_E, Qt::Key_R, m_painterDeckA);
    phrasingKeys(Qt::Key_I, Qt::Key_O, m_painterDeckB);
    shortcut(Qt::Key_S, [this] { m_painterDeckA->saveToColorFileA(); });
    shortcut(Qt::Key_J, [this] { m_painterDeckB->saveToColorFileB(); });

    const auto tag = [this](Qt::Key key, void (QWPainter::*draw)()) {
        const auto* digit = new QShortcut(key, this);
        for (QWPainter* graph : {m_painterDeckA, m_painterDeckB}) {
            connect(digit, &QShortcut::activated, graph, draw);
        }
    };
    tag(Qt::Key_0, &QWPainter::drawTagNumber_0);
    tag(Qt::Key_1, &QWPainter::drawTagNumber_1);
    tag(Qt::Key_2, &QWPainter::drawTagNumber_2);
    tag(Qt::Key_3, &QWPainter::drawTagNumber_3);
    tag(Qt::Key_4, &QWPainter::drawTagNumber_4);
}

void QWView::phrasingKeys(Qt::Key make, Qt::Key remove, const QWPainter* graph) {
    ManagePhrasing* areas = graph->colorAreas();
    shortcut(make, [areas] { areas->addArea(); });
    shortcut(Qt::SHIFT | make, [areas] { areas->defineAngleStart(); });
    shortcut(Qt::CTRL | Qt::SHIFT | make, [areas] { areas->addAreaOnAllEmptyArea(); });
    shortcut(remove, [areas] { areas->deleteArea(); });
    shortcut(Qt::SHIFT | remove, [areas] { areas->initAreas(); });
}

void QWView::playSound() {
    Q_EMIT s_Record();
}

void QWView::actionQuit() {
    close();
}

QWContextGraph* QWView::contextGraph() const {
    return m_contextGraph;
}

void QWView::contectGraphShow(int x, int y) {
    const auto* graph = qobject_cast<const QWPainter*>(sender());
    if (graph == nullptr) {
        graph = m_painterDeckA->isHidden() ? m_painterDeckB : m_painterDeckA;
    }
    createContexteMenu();
    // The graph stands beside the colour menu, so its own pixel is what says where the pointer is.
    const int shift = Singleton::instance().mode()->modeColor() ? QWPainter::colorMenuWidth : 0;
    m_contextGraph->popup(graph->mapToGlobal(QPoint(x - shift, y)));
}

void QWView::createContexteMenu() {
    if (m_contextGraph != nullptr) {
        m_contextGraph->deleteLater(); // one that was put away without being closed
    }
    Mode* mode = Singleton::instance().mode();
    m_contextGraph = new QWContextGraph(this);
    connect(m_contextGraph, &QWContextGraph::s_Autoresize_on, mode, &Mode::modeAutoresize_on);
    connect(m_contextGraph, &QWContextGraph::s_Autoresize_off, mode, &Mode::modeAutoresize_off);
    connect(m_contextGraph, &QWContextGraph::s_SelectArea, mode, &Mode::modeSelectArea_on);
    if (mode->modeAutoresize()) {
        m_contextGraph->autoresize_on();
    }
}

void QWView::endAutoresize() {
    if (m_contextGraph != nullptr) {
        m_contextGraph->autoresize_off();
    }
    Singleton::instance().mode()->modeAutoresize_off();
}

void QWView::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    Q_EMIT s_killApp();
}

bool QWView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close && watched == window()) {
        Q_EMIT s_killApp();
    }
    return QWidget::eventFilter(watched, event);
}

void QWView::exportFile() {
    Singleton& shared = Singleton::instance();
    const Mode& mode = *shared.mode();
    if (!mode.modeRecorder()) {
        return;
    }
    QThread::msleep(lastPointsMs);
    const ModelInput::EnumInput input = mode.inputMode();
    if (input != ModelInput::TEXT_B) {
        saveCurve(*m_painterDeckA, shared.pathFile()->fileDeckA());
    }
    if (input != ModelInput::TEXT_A) {
        saveCurve(*m_painterDeckB, shared.pathFile()->fileDeckB());
    }
}

void QWView::updateBpmSamplerate(ModelGraph::EnumGraph name) {
    Singleton& shared = Singleton::instance();
    shared.recordingLooperTraining()->updateBeatLength(name, shared.performance()->sample(name));
    // The graph's range is counted in beats.
    (name == ModelGraph::INPUT_DECKA ? m_painterDeckA : m_painterDeckB)->initGraph();
}

void QWView::updateAllBpmSamplerate() {
    updateBpmSamplerate(ModelGraph::INPUT_DECKA);
    updateBpmSamplerate(ModelGraph::INPUT_DECKB);
}

void QWView::applyStyle(QString filename) {
    QFile file(pathCss(filename + Constant::Extension::css));
    if (file.open(QIODevice::ReadOnly)) {
        setStyleSheet(QString::fromUtf8(file.readAll()));
    } else if (const QString first = enumText(ModelStyle::Gramoscope);
               styleSheet().isEmpty() && filename != first) {
        applyStyle(first); // never without a style
    }
}

void QWView::showInput(ModelInput::EnumInput input) {
    m_painterDeckA->setVisible(input != ModelInput::TEXT_B);
    m_painterDeckB->setVisible(input != ModelInput::TEXT_A);
}
