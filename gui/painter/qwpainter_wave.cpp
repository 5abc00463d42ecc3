// The sample that the deck's areas were made for, behind the curves, and the needles in it.
#include "qwpainter.h"

#include "curvecolor.h"
#include "devicepixels.h"
#include "needle.h"
#include "qwpainterwav.h"
#include "wavemarkers.h"

#include "phrasing/managephrasing.h"
#include "state/mode.h"
#include "state/recordingloopertraining.h"
#include "state/time.h"

#include <QPainter>

namespace {

void drawMarker(QPainter& painter, const QRectF& marker, ModelGraph::EnumGraph item) {
    painter.setPen(QPen(markerOutline, 1.0));
    painter.setBrush(needleColor(item));
    painter.drawRect(DevicePixels(painter).nearest(marker));
    painter.setBrush(Qt::NoBrush);
}

} // namespace

void QWPainter::followNeedle(const CurvePoint& needle) {
    if (int index = -1; m_colorAreas->areaAt(needle.angle, index) != nullptr) {
        m_currentArea = index; // stays while the needle is outside all areas
    }
}

void QWPainter::wantWavePicture() {
    if (m_wavePainter->hasWave() && m_mode.displayMode() == ModelDisplay::PHRASING) {
        followNeedle(needleAt(*m_mainCurve, m_time.cursor(m_deckName), m_mode.modeRun()));
        m_wavePainter->want(m_currentArea);
    }
}

void QWPainter::finishWavePictures() {
    wantWavePicture();
    m_wavePainter->finish();
}

void QWPainter::drawWave(QPainter& painter) {
    if (!m_wavePainter->hasWave()) {
        return;
    }
    const CurvePoint main = needleAt(*m_mainCurve, m_cursorTime, m_mode.modeRun());
    switch (m_mode.displayMode()) {
    case ModelDisplay::NORMAL:
        if (!m_layout.hasWaveBar()) {
            break; // too low a graph
        }
        // Bar and marker of the live curve cover those of the reference.
        m_waveBars.drawSplit(painter, m_wavePainter->fullWaveImage(), waveBar(m_layout),
                             waveBarSplit(main.angle));
        drawMarker(painter, normalMarker(m_layout), m_deckName);
        break;
    case ModelDisplay::PHRASING:
        followNeedle(main);
        m_waveBars.drawUpright(painter, m_wavePainter->areaWaveImage(m_currentArea),
                               waveSideBar(m_layout, width()));
        drawSideMarkers(painter, main);
        break;
    case ModelDisplay::DRUMMING:
        m_waveBars.drawUpright(painter, m_wavePainter->fullWaveImage(), waveSideBar(m_layout, width()));
        drawSideMarkers(painter, main);
        break;
    default:
        break;
    }
}

void QWPainter::drawSideMarkers(QPainter& painter, const CurvePoint& main) const {
    const QRectF bar = waveSideBar(m_layout, width());
    const auto draw = [&](const CurvePoint& needle, ModelGraph::EnumGraph item) {
        if (m_mode.displayMode() == ModelDisplay::DRUMMING) {
            drawMarker(painter, drummingMarker(m_layout, bar, needle.angle), item);
            return;
        }
        int index = -1;
        const QPhrasing* area = m_colorAreas->areaAt(needle.angle, index);
        if (area == nullptr) {
            return;
        }
        if (const auto marker =
                phrasingMarker(m_layout, bar, needle.angle, area->angleStart(), area->size())) {
            drawMarker(painter, *marker, item);
        }
    };
    if (m_training.activatedMode() != ModelActivatedMode::Looper) {
        draw(needleAt(*m_secondaryCurve, m_cursorTime, false), m_secondaryCurve->graphName());
    }
    draw(main, m_deckName);
}
