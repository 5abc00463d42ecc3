#pragma once
// One graph with its two curves, and its picture.

#include "gui/support/curves.h"
#include "gui/support/guiprocess.h"
#include "painter/qwpainter.h"

#include "curve/autoresize.h"
#include "curve/qcurve.h"
#include "state/mode.h"
#include "state/performance.h"
#include "state/recordingloopertraining.h"
#include "state/setting.h"
#include "state/singleton.h"
#include "state/storedperformance.h"
#include "state/time.h"

#include <QImage>
#include <QPalette>

inline Mode& mode() {
    return *Singleton::instance().mode();
}
inline Time& clocks() {
    return *Singleton::instance().time();
}
inline Setting& setting() {
    return *Singleton::instance().setting();
}
inline Performance& performance() {
    return *Singleton::instance().performance();
}
inline RecordingLooperTraining& training() {
    return *Singleton::instance().recordingLooperTraining();
}

/// Puts the shared state back to that of a first start with 16 beats shown: 84 beats a minute at 48000 Hz.
inline void resetSharedState() {
    applyStoredPerformance(setting(), performance());
    mode().modeRun_off();
    mode().modeHold_off();
    mode().modeAutoresize_off();
    mode().modeCurrentTimerAutoresize_off();
    mode().modeGraphicScrollStop_off();
    mode().modeRecorder_off();
    mode().setDisplayMode(ModelDisplay::NORMAL);
    mode().setInputMode(ModelInput::UNDEFINED);
    mode().setGraphBeats(16.0);
    training().setActivatedMode(ModelActivatedMode::Looper);
    training().setBpmValue(84.0);
    training().setBpmEffective(84.0);
    Singleton::instance().autoresize()->setMinValue(0.0);
    Singleton::instance().autoresize()->setMaxValue(0.0);
    for (const auto deck : {ModelGraph::INPUT_DECKA, ModelGraph::INPUT_DECKB}) {
        training().updateBeatLength(deck, performance().sample(deck));
        clocks().clearCursor(deck);
        clocks().clearFrameCounter(deck);
    }
    setting().setCurveOnSize(8);
    setting().setGraphCurveCrossFaderOff(true);
    setting().setGraphCurveCrossFaderOffInvertColor(false);
    setting().setGraphGrid(true);
    setting().setGraphLogo(true);
    setting().setLatency(false);
}

/// The widget's picture on a screen of that pixel ratio.
inline QImage pictureOf(QWidget& widget, double ratio = 1.0) {
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    widget.render(&image);
    return image;
}

struct DeckGraph {
    explicit DeckGraph(ModelGraph::EnumGraph deck = ModelGraph::INPUT_DECKA, QSize size = {1200, 500})
        : graph(deck, deck == ModelGraph::INPUT_DECKA ? ModelGraph::INPUT_1 : ModelGraph::INPUT_2, main,
                secondary, nullptr) {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(43, 43, 43));
        graph.setPalette(palette);
        graph.resize(size);
        graph.refreshVariable(); // a widget that isn't shown gets no resize event before its first picture
        setCursor(0.0);
    }
    /// Puts the deck's cursor somewhere.
    void setCursor(double time) const { clocks().setCursor(graph.deckName(), time); }
    GraphScale scale() const {
        return {graph.layoutPixels(), graph.xRange(), graph.yRange(), mode().modeCurrentTimerAutoresize()};
    }

    CurvePointStore main;
    CurvePointStore secondary;
    QWPainter graph;
};
