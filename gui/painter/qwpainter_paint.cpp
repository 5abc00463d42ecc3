// The paint of the graph: one function a step, in the order of the picture from back to front.
#include "qwpainter.h"

#include "curveoffset.h"
#include "devicepixels.h"
#include "graphcaption.h"
#include "graphcursor.h"
#include "graphgrid.h"
#include "graphstyle.h"
#include "model/wholenumber.h"
#include "qwdrawvinylposition.h"
#include "qwpainterwav.h"
#include "yrange.h"

#include "curve/autoresize.h"
#include "curve/qcurve.h"
#include "phrasing/managephrasing.h"
#include "state/mode.h"
#include "state/recordingloopertraining.h"
#include "state/time.h"

#include <QBackingStore>
#include <QFont>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>
#include <utility>

namespace {

constexpr double logoSide = 400.0; // the logo fits into this square, pixels
constexpr int logoLeft = 65;
constexpr int logoAbovePlotBottom = 20;
constexpr int countInPoints = 80;
constexpr int troubleMargin = 4; // of ground to either side of the text, pixels

// What the curve shows of the range; names its visible stretch on the way.
std::optional<GraphRange> extremesOf(QCurve& curve, const GraphRange& x) {
    GraphRange extremes{DBL_MAX, DBL_MIN};
    bool found = false;
    curve.minMaxPosition(truncated(x.min), truncated(x.max), extremes.min, extremes.max, found);
    return found ? std::optional(extremes) : std::nullopt;
}

std::optional<CurveExtract> extractOf(QCurve& curve) {
    const CurvePointStore::View points = curve.points();
    const auto stretch = curveStretch(points, curve.firstVisible(), curve.lastVisible());
    if (!stretch) {
        return std::nullopt;
    }
    return CurveExtract{curve.graphName(), points, *stretch, curve.store().generation()};
}

} // namespace

void QWPainter::paintEvent(QPaintEvent* event) {
    const bool onWindow = paintsWindow();
    if (onWindow) {
        m_repaintDue = false;
        if (std::exchange(m_drawnAhead, false)) {
            return; // beside the other graph, in this paint of the window
        }
    }
    beginFrame();
    const bool whole = event->region() == QRegion(rect()); // a part isn't cut to less
    auto own = onWindow && whole ? windowPart(*this) : std::nullopt;
    if (own && companionIsDue()) {
        m_companion->beginFrame();
        if (auto beside = windowPart(*m_companion)) {
            takePart(std::move(*own)); // while nobody draws
            m_companion->startDrawingOn(std::move(*beside));
            m_drawing.start([this] { drawFrame(*m_partPainter, m_threadLabels); });
            finishDrawing();
            m_companion->finishDrawing();
            holdScroll();
            m_companion->holdScroll();
            return;
        }
    }
    if (own) { // nothing is gained by handing it over
        takePart(std::move(*own));
        drawFrame(*m_partPainter, m_labels);
        finishDrawing();
    } else {
        QPainter painter(this);
        drawFrame(painter, m_labels);
    }
    holdScroll();
}

bool QWPainter::paintsWindow() const {
    QBackingStore* const store = backingStore();
    QPoint corner;
    return store != nullptr && redirected(&corner) == store->paintDevice();
}

bool QWPainter::companionIsDue() const {
    return m_companion != nullptr && m_companion->m_repaintDue && m_companion->isVisible() &&
           m_companion->updatesEnabled() && m_companion->window() == window();
}

void QWPainter::startDrawingOn(WindowPart part) {
    m_repaintDue = false;
    m_drawnAhead = true;
    ++m_drawnBeside;
    takePart(std::move(part));
    m_drawing.start([this] { drawFrame(*m_partPainter, m_threadLabels); });
}

void QWPainter::takePart(WindowPart part) {
    m_part = std::move(part); // a copy of the picture would be drawn on for itself
    m_partPainter = std::make_unique<QPainter>(&m_part.pixels);
    // As the painter of a widget starts.
    m_partPainter->setPen(QPen(palette().brush(foregroundRole()), 1.0));
    m_partPainter->setBackground(palette().brush(backgroundRole()));
    m_partPainter->setFont(QFont(font(), this));
    m_partPainter->setLayoutDirection(layoutDirection());
    m_partPainter->translate(m_part.corner);
}

void QWPainter::finishDrawing() {
    m_drawing.finish();
    m_partPainter.reset();
    m_part = {};
}

void QWPainter::beginFrame() {
    refreshVariable(); // a setting may have changed what is shown
    m_cursorTime = m_time.cursor(m_deckName);
    m_following = followCursor();
    collectExtremes();
    chooseYRange();
    m_areaColors.update(m_colorAreas->listPhrasing());
    // Neither of the two may be asked for while both graphs are drawn: they look things up in what is shared.
    m_optionCache.options();
    m_ground = palette().window();
}

void QWPainter::drawFrame(QPainter& painter, GraphLabels& labels) {
    const GraphOptions& options = m_optionCache.options();
    drawGround(painter, options.logo);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const GraphScale scale(m_layout, m_x, m_y, m_following);

    drawWave(painter);
    drawTagNumber(painter);
    const GraphCursor cursor(painter, m_layout, width(), truncated(scale.mapX(m_cursorTime)),
                             cursorBeat(m_cursorTime, sampleRate(), m_training.bpmEffective()), labels.grid);
    if (options.grid) {
        drawBeatGrid(painter, scale, options, cursor.text(), labels.grid);
    }
    drawCurves({painter, scale, options, QRectF(rect()), m_mode.displayMode(), &m_areaColors,
                m_layout.hasDirectWave() ? m_wavePainter->wavePairs() : std::span<const WavePair>(),
                &m_shiniIcons, m_mode.modeReverse()});
    cursor.draw(painter, labels.grid);
    if (options.vinylPosition) {
        m_vinylPosition->draw(painter, m_cursorTime, options.vinylColorRotation, m_layout.plotBottom,
                              labels.names);
    }
    drawTrouble(painter);
    drawCountIn(painter);
}

bool QWPainter::followCursor() {
    if (m_mode.modeAutoresize()) {
        modeAutoresize();
        if (!m_mode.modeRun()) {
            Q_EMIT s_EndAutoresize();
        }
        return false;
    }
    if (m_mode.modeCurrentTimerAutoresize()) {
        setXRange(m_window.around(m_cursorTime));
        return true;
    }
    return false;
}

void QWPainter::collectExtremes() {
    const auto secondary = extremesOf(*m_secondaryCurve, m_x);
    const auto main = extremesOf(*m_mainCurve, m_x);
    const double shift = firstPositionDifference(m_mainCurve->points(), m_secondaryCurve->points());
    if (const auto extremes = visibleExtremes(main, secondary, shift)) {
        m_autoresize.setMinValue(extremes->min);
        m_autoresize.setMaxValue(extremes->max);
    }
}

void QWPainter::chooseYRange() {
    m_y = plotsAngle(m_mode.displayMode())
              ? GraphRange{0.0, AnglePlot::height}
              : followingYRange(m_y, {m_autoresize.minValue(), m_autoresize.maxValue()});
}

void QWPainter::drawGround(QPainter& painter, bool logo) {
    const DevicePixels device(painter); // also of an image that the graph is rendered to
    const OnDevicePixels onPixels(painter);
    QRegion ground(device.pixels(rect()));
    if (logo && !m_logoSource.isNull()) {
        scaleLogo(device.ratio());
        const QPointF corner = QPointF(logoLeft, m_layout.plotBottom - logoAbovePlotBottom) * device.ratio();
        const QPoint place(qRound(corner.x()), qRound(corner.y()) - m_logo.height());
        painter.drawImage(place, m_logo);
        ground -= QRect(place, m_logo.size()); // it brings its own
    }
    for (const QRect& part : ground) {
        painter.fillRect(part, m_ground);
    }
}

void QWPainter::scaleLogo(double ratio) {
    const double room = m_layout.plotHeight - logoAbovePlotBottom; // a low graph has a small logo
    const int side = static_cast<int>(std::lround(std::clamp(room, 1.0, logoSide) * ratio));
    const QColor ground = m_ground.color();
    if (std::max(m_logo.width(), m_logo.height()) == side && m_logoGround == ground) {
        return;
    }
    // On its ground, which is all that lies below it: an opaque picture is laid down at once.
    const QImage logo = m_logoSource.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    m_logo = QImage(logo.size(), QImage::Format_RGB32);
    m_logo.fill(ground);
    QPainter(&m_logo).drawImage(0, 0, logo);
    m_logoGround = ground;
}

void QWPainter::drawTagNumber(QPainter& painter) const {
    if (m_tagNumber == 0) {
        return;
    }
    const TextStyle style(painter, ModelGraph::TAG_NUMBER);
    painter.drawText(QRect(0, 0, width(), height() / 2), Qt::AlignHCenter | Qt::AlignBottom,
                     QString::number(m_tagNumber));
}

void QWPainter::drawBeatGrid(QPainter& painter, const GraphScale& scale, const GraphOptions& options,
                             const std::optional<LabelSpan>& cursorText, LabelCache& labels) {
    drawGrid(painter, {.scale = scale,
                       .layout = m_layout,
                       .width = width(),
                       .display = m_mode.displayMode(),
                       .areas = *m_colorAreas,
                       .beatLength = beatLength(),
                       .firstMetronome = m_training.firstMetronome(),
                       .sampleRate = sampleRate(),
                       .bpmEffective = m_training.bpmEffective(),
                       .ground = m_ground.color(),
                       .latencyText = options.latency ? std::optional(m_latencyText) : std::nullopt,
                       .labels = labels,
                       .cursorText = cursorText});
}

QStringList QWPainter::troubles() const {
    QStringList lines;
    for (const QString& path : m_notWritten) {
        lines << tr("Not written: %1").arg(path);
    }
    if (m_serverLost) {
        lines << tr("The sound server was lost. Start the program again.");
    } else if (!m_missingDevice.isEmpty()) {
        lines << tr("The device isn't there: %1").arg(m_missingDevice);
    } else if (m_silent) {
        lines << tr("No sound from the device");
    } else if (m_lost > 0) {
        lines << tr("Out of memory: %1 samples lost").arg(m_lost);
    }
    return lines;
}

void QWPainter::drawTrouble(QPainter& painter) const {
    const QStringList lines = troubles();
    if (lines.isEmpty()) {
        return;
    }
    const TextStyle style(painter, ModelGraph::CURRENT);
    // What the space below the plot doesn't hold grows up into it. Over half of the beat numbers, over curves
    // or the wave's bar nobody could read it: the ground is laid below it.
    const QRect place(205, m_layout.plotTop, width() - 365, m_layout.captionBottom - m_layout.plotTop);
    constexpr int flags = Qt::AlignLeft | Qt::AlignBottom | Qt::TextWrapAnywhere;
    const QString text = lines.join(u'\n');
    QRect below = painter.boundingRect(place, flags, text).adjusted(-troubleMargin, 0, troubleMargin, 0);
    if (below.top() < m_layout.labelBottom) {
        below.setTop(std::min(below.top(), truncated(m_layout.plotBottom) + troubleMargin));
    }
    painter.fillRect(below & place.adjusted(-troubleMargin, 0, troubleMargin, 0), m_ground);
    painter.drawText(place, flags, text);
}

void QWPainter::drawCurves(const CurveScene& scene) {
    const auto main = extractOf(*m_mainCurve);
    const auto secondary = m_training.activatedMode() == ModelActivatedMode::Looper
                               ? std::nullopt
                               : extractOf(*m_secondaryCurve);
    // The tag number of a low graph may reach up to the strips.
    std::optional<QColor> ground;
    if (m_tagNumber == 0) {
        ground = m_ground.color();
    }
    if (secondary) {
        drawSoundStrip(scene, *secondary, ground);
    }
    if (main) {
        drawSoundStrip(scene, *main, secondary ? std::nullopt : ground);
    }
    if (secondary) {
        m_secondaryLayer.draw(scene, *secondary,
                              scene.display == ModelDisplay::NORMAL
                                  ? referenceOffset(m_mainCurve->points(), secondary->points)
                                  : 0.0);
    }
    if (main) {
        m_mainLayer.draw(scene, *main, 0.0);
    }
}

void QWPainter::holdScroll() {
    const bool beside = m_companion != nullptr && !m_companion->isHidden();
    if (beside && m_mainCurve->points().empty() && !m_companion->mainCurve()->points().empty()) {
        return; // no record on this deck: the other graph decides
    }
    const bool otherMoves = beside && m_companion->recordMoves();
    if (m_mode.modeHold() && recordStandsStill() && !otherMoves) {
        m_mode.modeGraphicScrollStop_on();
    } else {
        m_mode.modeGraphicScrollStop_off();
    }
}

void QWPainter::drawCountIn(QPainter& painter) const {
    if (!m_countIn.visible()) {
        return;
    }
    const QPointF center = QRectF(rect()).center();
    const double scale = double(m_countIn.scale());
    painter.save();
    painter.translate(center);
    painter.scale(scale, scale);
    painter.translate(-center);
    QFont font = painter.font();
    font.setPointSize(countInPoints);
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(graphGrey);
    painter.drawText(rect(), Qt::AlignCenter, QString::number(m_countIn.number()));
    painter.restore();
}
