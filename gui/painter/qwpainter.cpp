#include "qwpainter.h"

#include "graphcaption.h"
#include "model/wholenumber.h"
#include "qwdrawvinylposition.h"
#include "qwpainterwav.h"
#include "standstill.h"
#include "yrange.h"

#include "curve/autoresize.h"
#include "curve/qcurve.h"
#include "model/enumtext.h"
#include "model/modelstyle.h"
#include "phrasing/managephrasing.h"
#include "state/mode.h"
#include "state/pathfile.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/time.h"

#include <QEvent>

#include <algorithm>
#include <cmath>

namespace {

// First and last time of a curve, none without points.
std::optional<FrameRange> timesOf(const QCurve& curve) {
    const CurvePointStore::View points = curve.points();
    if (points.empty()) {
        return std::nullopt;
    }
    return FrameRange{truncated(points.front().time), truncated(points.back().time)};
}

} // namespace

QWPainter::QWPainter(ModelGraph::EnumGraph deckName, ModelGraph::EnumGraph secondaryName,
                     CurvePointStore& mainPoints, CurvePointStore& secondaryPoints, QWidget* parent)
    : QWidget(parent)
    , m_mode(*Singleton::instance().mode())
    , m_time(*Singleton::instance().time())
    , m_performance(*Singleton::instance().performance())
    , m_autoresize(*Singleton::instance().autoresize())
    , m_training(*Singleton::instance().recordingLooperTraining())
    , m_setting(*Singleton::instance().setting())
    , m_optionCache(m_setting)
    , m_deckName(deckName)
    , m_colorAreas(new ManagePhrasing(deckName, this))
    , m_secondaryCurve(new QCurve(secondaryName, secondaryPoints, this))
    , m_mainCurve(new QCurve(deckName, mainPoints, this))
    , m_wavePainter(new QWPainterWav(deckName, this))
    , m_vinylPosition(new QWDrawVinylPosition(m_mainCurve, m_secondaryCurve, m_colorAreas, this))
    , m_drawing(deckName == ModelGraph::INPUT_DECKA ? QStringLiteral("drawing A")
                                                    : QStringLiteral("drawing B")) {
    setObjectName(QStringLiteral("painter"));
    setAttribute(Qt::WA_OpaquePaintEvent); // every paint fills all of it
    m_countInTimer.setInterval(CountIn::tickMs);
    connect(&m_countInTimer, &QTimer::timeout, this, [this] {
        if (!m_countIn.step()) {
            m_countInTimer.stop();
        }
        update();
    });
    connect(m_colorAreas, &ManagePhrasing::s_Update, this, &QWPainter::generateWavPhrasing);
    refreshVariable();
    initGraph();
    initIcon();
    retranslate();
}

QWPainter::~QWPainter() {
    // Fonts belong to the thread that laid texts out with them.
    if (m_drawing.used()) {
        m_drawing.start([this] { m_threadLabels = {}; });
    }
}

double QWPainter::beatLength() const {
    return m_training.beatLength(m_deckName);
}

double QWPainter::sampleRate() const {
    return m_performance.sample(m_deckName)->sampleRate();
}

void QWPainter::retranslate() {
    setAccessibleName(m_deckName == ModelGraph::INPUT_DECKA ? tr("Graph of deck A") : tr("Graph of deck B"));
}

void QWPainter::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    QWidget::changeEvent(event);
}

void QWPainter::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_drawnAhead = false;
    refreshVariable();
}

void QWPainter::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    m_drawnAhead = false;
}

void QWPainter::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_repaintDue = false;
    m_drawnAhead = false;
}

void QWPainter::refreshVariable() {
    const bool wave = m_wavePainter->hasWave();
    const bool bar = wave && m_mode.displayMode() == ModelDisplay::NORMAL;
    const bool direct = wave && m_optionCache.options().directSound;
    m_layout = GraphLayout::fitting(width(), height(), bar, direct);
}

void QWPainter::chooseWindow() {
    m_window = cursorWindow(m_training.activatedMode(), m_mode.graphBeats(), beatLength());
}

void QWPainter::initGraph() {
    m_stillWindow = stillWindow(sampleRate(), m_performance.inputBuffer(m_deckName));
    m_latencyText.clear();
    chooseWindow();
    setXRange(m_window.around(0.0));
    m_y = initialYRange(m_y, m_mode.displayMode());
    initStart();
}

std::int64_t QWPainter::setXRange(FrameRange range) {
    if (acceptsRange(range, beatLength())) {
        m_x = {double(range.from), double(range.to)};
    }
    return absoluteSpan(range);
}

void QWPainter::initIcon() {
    const bool red = m_setting.style() == enumText(ModelStyle::RedGuillotine);
    m_logoSource = pathIcon(red ? QStringLiteral("graphlogo/Logo - Gramo Works-WhiteDark - RedGuillotine.png")
                                : QStringLiteral("graphlogo/Logo - Gramo Works-WhiteDark.png"))
                       .toImage();
    m_logo = QImage();
    m_shiniIcons.load();
    update();
}

// Around the cursor, which stops where the take does. Behind a sound server that was lost it has run on for
// two seconds more, longer than a narrow range is: then around the last point.
FrameRange QWPainter::rangeInSight() const {
    const FrameRange range = m_window.around(m_time.cursor(m_deckName));
    const CurvePointStore::View points = m_mainCurve->points();
    if (m_mode.modeRun() || points.empty() || points.back().time >= range.from) {
        return range;
    }
    return m_window.around(points.back().time);
}

void QWPainter::beatsChanged() {
    chooseWindow();
    setXRange(rangeInSight());
}

void QWPainter::displayChanged() {
    refreshVariable();
    m_y = initialYRange(m_y, m_mode.displayMode());
}

void QWPainter::initStart() {
    m_currentArea = -1;
    Q_EMIT s_InitStart();
}

void QWPainter::refresh() {
    followAreas();
    // 0: the deck has received nothing since its last restart. Its clock starts with the first buffer.
    if (m_time.observeFrameCounter(m_deckName) == 0.0) {
        if (m_mode.modeRun()) {
            m_time.clearCursor(m_deckName);
        }
        initStart();
    } else if (!m_mode.modeGraphicScrollStop() && m_mode.modeRun()) {
        m_time.setCursor(m_deckName,
                         std::trunc(m_time.framesNow(m_deckName, m_performance.sample(m_deckName))));
    }
    wantWavePicture();
    m_repaintDue = isVisible() && updatesEnabled();
    m_drawnAhead = false;
    update();
}

void QWPainter::resetCurve_Main() {
    m_mainCurve->resetCurve();
}

void QWPainter::resetCurve_Secondary() {
    m_secondaryCurve->resetCurve();
}

void QWPainter::importCurve_Secondary(QString filename, bool load_bpm) {
    m_secondaryCurve->loadFromFile(filename, load_bpm);
    m_secondaryLayer.forget();
    Q_EMIT s_EndImportCurve_Secondary();
}

void QWPainter::modeAutoresize() {
    const auto range = fittingRange(timesOf(*m_mainCurve), timesOf(*m_secondaryCurve), beatLength());
    if (range) {
        setXRange(*range);
    }
}

void QWPainter::updateMinMaxFromCurve(int& currentMin, int& currentMax, QCurve* curve) {
    const auto times = timesOf(*curve);
    if (!times) {
        return;
    }
    if (currentMin == 0 && currentMax == 0) {
        currentMin = times->from;
        currentMax = times->to;
    } else {
        currentMin = std::min(currentMin, times->from);
        currentMax = std::max(currentMax, times->to);
    }
}

void QWPainter::setTagNumber(int number) {
    m_tagNumber = number;
    update();
}

void QWPainter::drawTagNumber_4() {
    setTagNumber(4);
}
void QWPainter::drawTagNumber_3() {
    setTagNumber(3);
}
void QWPainter::drawTagNumber_2() {
    setTagNumber(2);
}
void QWPainter::drawTagNumber_1() {
    setTagNumber(1);
}
void QWPainter::drawTagNumber_0() {
    setTagNumber(0);
}

void QWPainter::ringBufferLatencyMs(double latencyMs, size_t maxFill, size_t capacity) {
    m_latencyText = latencyCaption(latencyMs, m_performance.outputBuffer(), maxFill, capacity);
}

void QWPainter::overflow(quint64 lost) {
    m_lost = lost;
}

void QWPainter::silentInput(ModelGraph::EnumGraph name, bool silent) {
    if (name == m_deckName) {
        m_silent = silent;
    }
}

void QWPainter::notWritten(QString path) {
    m_notWritten << path;
}

void QWPainter::missingDevice(ModelGraph::EnumGraph name, const QString& device) {
    if (name == m_deckName || name == ModelGraph::INPUT_MASTER) {
        m_missingDevice = device;
    }
}

void QWPainter::serverLost() {
    m_serverLost = true;
}

void QWPainter::forgetTrouble() {
    m_lost = 0;
    m_notWritten.clear();
    m_silent = false;
    m_missingDevice.clear();
}

void QWPainter::showCountIn(int count) {
    m_countIn.show(count);
    m_countInTimer.start();
    update();
}

bool QWPainter::recordMoves() const {
    return !m_mainCurve->points().empty() && !recordStandsStill();
}

bool QWPainter::recordStandsStill() const {
    return standsStill(m_mainCurve->points(), m_stillWindow);
}
