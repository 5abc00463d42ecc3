#pragma once
// A running session with two virtual decks and both graphs in the window, its areas worked by keys.

#include "liverig.h"
#include "session.h"

#include "button/qbselectinput.h"
#include "curve/qcurve.h"
#include "phrasing/managephrasing.h"

#include <QWindow>

#include <array>

/// What the keyboard has for a deck, and its colour.
struct DeckKeys {
    bool isA;
    Qt::Key make;
    Qt::Key remove;
    Qt::Key zero;
    Qt::Key save;
    QColor curve;
};
inline const std::array decks{
    DeckKeys{true, Qt::Key_E, Qt::Key_R, Qt::Key_Return, Qt::Key_S, QColor(0, 255, 0)},
    DeckKeys{false, Qt::Key_I, Qt::Key_O, Qt::Key_Backspace, Qt::Key_J, QColor(0, 255, 255)}};

/// The values of an area.
struct Area {
    double start = 0.0;
    double end = 0.0;
    QRgb color = 0;
    bool operator==(const Area&) const = default;
};

inline QList<Area> areasOf(const QPhrasingList& list) {
    QList<Area> areas;
    for (const QPhrasingPtr& area : list) {
        areas << Area{area->angleStart(), area->angleEnd(), area->color().rgba()};
    }
    return areas;
}

/// The points of a deck around a key press. The press saw the angle of one of them.
struct Moment {
    std::size_t first = 0;
    std::size_t last = 0;
};

/// The session and the two decks that it plays.
class Live {
public:
    explicit Live(const QString& pattern) : m_deck({QStringLiteral("--pattern"), pattern}) {}
    /// A run that a failed check has left behind would spoil the next one.
    ~Live() {
        if (m_session && Session::mode().modeTraining()) {
            m_session->stop();
        }
    }
    Live(const Live&) = delete;
    Live& operator=(const Live&) = delete;

    /// False if there is no running session with both curves within a few seconds.
    bool start(bool recording = false) {
        const QString card = QStringLiteral("Virtual Deck");
        if (!m_deck.start()) {
            return false;
        }
        Session::store({card, QStringLiteral("4p0")}, {card, QStringLiteral("4p1")}, {});
        m_session = std::make_unique<Session>();
        Connection& connection = m_session->connection();
        while (connection.view()->painterDeckA()->isHidden() ||
               connection.view()->painterDeckB()->isHidden()) {
            QTest::mouseClick(m_session->tool().selectInput(), Qt::LeftButton);
        }
        m_session->setRecording(recording);
        connection.activateWindow();
        return QTest::qWaitForWindowActive(&connection) && m_session->start() &&
               waitForPoints(decks[0], 100) && waitForPoints(decks[1], 100);
    }

    Session& session() const { return *m_session; }
    QWPainter* graph(const DeckKeys& deck) const {
        const QWView* view = m_session->connection().view();
        return deck.isA ? view->painterDeckA() : view->painterDeckB();
    }
    CurvePointStore::View points(const DeckKeys& deck) const { return graph(deck)->mainCurve()->points(); }
    QList<Area> areas(const DeckKeys& deck) const {
        return areasOf(graph(deck)->colorAreas()->listPhrasing());
    }

    bool waitForPoints(const DeckKeys& deck, std::size_t count) const {
        return QTest::qWaitFor([&] { return points(deck).size() >= count; }, 10000);
    }
    /// Until the needle lies between two angles, degrees.
    bool waitForAngle(const DeckKeys& deck, double from, double to) const {
        return QTest::qWaitFor(
            [&] {
                const double angle = points(deck).back().angle;
                return angle > from && angle < to;
            },
            10000);
    }

    /// Presses a key in the window and waits for the points behind it.
    Moment press(const DeckKeys& deck, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QWindow* window = m_session->connection().windowHandle();
        const std::size_t before = points(deck).size();
        QTest::keyPress(window, key, modifiers);
        // The keys are told a point's angle just before the point is in the curve.
        const std::size_t after = points(deck).size();
        QTest::keyRelease(window, key, modifiers);
        waitForPoints(deck, after + 1);
        return {before - 1, after};
    }
    /// Whether a point of that moment carries the angle, to the last bit.
    bool carried(const DeckKeys& deck, Moment moment, double angle) const {
        const auto all = points(deck);
        for (std::size_t i = moment.first; i <= moment.last && i < all.size(); ++i) {
            if (all[i].angle == angle) {
                return true;
            }
        }
        qWarning("none of the points %zu to %zu has %.17g but from %.17g to %.17g", moment.first, moment.last,
                 angle, all[moment.first].angle, all[moment.last].angle);
        return false;
    }

private:
    VirtualDeck m_deck;
    std::unique_ptr<Session> m_session;
};
