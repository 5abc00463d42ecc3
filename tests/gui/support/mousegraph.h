#pragma once
// A graph a thousand frames a pixel wide, and a mouse for it.

#include "gui/support/deckgraph.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

inline constexpr int notchIn = 120;
inline constexpr int notchOut = -120;

inline void paint(QWidget& widget) {
    pictureOf(widget);
}

inline void press(QWidget& widget, int x, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(&widget, button, Qt::NoModifier, QPoint(x, 200));
}
inline void release(QWidget& widget, int x, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseRelease(&widget, button, Qt::NoModifier, QPoint(x, 200));
}
inline void drag(QWidget& widget, int from, int to) {
    press(widget, from);
    release(widget, to);
}
/// A press or a release between two pixels.
inline void mouseAt(QWidget& widget, QEvent::Type type, QPointF place,
                    Qt::MouseButton button = Qt::LeftButton) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? button : Qt::NoButton;
    QMouseEvent event(type, place, widget.mapToGlobal(place), button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}
inline void wheel(QWidget& widget, double x, int angle) {
    const QPointF place(x, 200.0);
    QWheelEvent event(place, widget.mapToGlobal(place), QPoint(), QPoint(0, angle), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
    QVERIFY(event.isAccepted());
}

// 1200 pixels wide: a thousand frames a pixel, and pixel 45 is frame 0.
inline constexpr FrameRange wide{0, 1155000};

/// A graph that shows `wide`, at 90 beats a minute: 32000 frames a beat at 48000 Hz.
struct WideGraph : DeckGraph {
    explicit WideGraph(ModelGraph::EnumGraph deck = ModelGraph::INPUT_DECKA) : DeckGraph(deck) {
        training().setBpmEffective(90.0);
        training().updateBeatLength(deck, performance().sample(deck));
        graph.setXRange(wide);
    }
};
