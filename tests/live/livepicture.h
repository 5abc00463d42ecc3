#pragma once
// What the window of a running session shows of the curves and of the discs.

#include "livephrasing.h"

#include "curve/angle.h"
#include "painter/graphscale.h"

#include <QImage>

#include <cmath>
#include <numbers>
#include <optional>

/// What the window shows along a curve.
struct CurveLook {
    int inside = 0;      ///< places in an area that were looked at
    int insideLater = 0; ///< those of them behind a given point
    int outside = 0;     ///< places outside all areas
    QString wrong;       ///< the first place that hasn't the colour it should have
};

/// A picture of the window, and what the curves were when it was taken.
class LivePicture {
public:
    explicit LivePicture(const Live& live)
        : m_live(live)
        , m_points{live.points(decks[0]), live.points(decks[1])} // those are in the picture
        , m_window(&live.session().connection())
        , m_picture(m_window->grab().toImage()) {}

    /// Looks at a curve. In an area it is to have the area's colour, elsewhere `outside`.
    CurveLook curve(const DeckKeys& deck, const QColor& outside, std::size_t later = 0) const {
        const CurvePointStore::View& all = m_points[deck.isA ? 0 : 1];
        const QWPainter* graph = m_live.graph(deck);
        const QPoint corner = graph->mapTo(m_window, QPoint());
        const GraphScale scale(graph->layoutPixels(), graph->xRange(), graph->yRange(), true);
        const double cursor = scale.column(Singleton::instance().time()->cursor(graph->deckName()));
        CurveLook seen;
        for (std::size_t i = reach; i + reach < all.size(); i += 8) {
            const CurvePoint& point = all[i];
            const double x = scale.column(point.time);
            const auto value = plotted(deck, point);
            if (x < GraphLayout::leftMargin + 10 || std::abs(x - cursor) < 5 || !value || !even(deck, i)) {
                continue;
            }
            const QPhrasing* area = areaAt(deck, point.angle);
            const QColor wanted = area != nullptr ? area->color() : outside;
            const QPoint place = corner + QPoint(int(x), int(scale.mapY(*value)));
            if (const QColor found = m_picture.pixelColor(place); found != wanted && seen.wrong.isEmpty()) {
                seen.wrong = QStringLiteral("point %1 at %2 degrees, pixel %3/%4: %5 instead of %6")
                                 .arg(i)
                                 .arg(point.angle)
                                 .arg(place.x())
                                 .arg(place.y())
                                 .arg(found.name(), wanted.name());
            }
            ++(area != nullptr ? seen.inside : seen.outside);
            seen.insideLater += area != nullptr && i > later ? 1 : 0;
        }
        return seen;
    }

    /// The colour of the deck's disc at an angle, between hub and rim.
    QColor disc(const DeckKeys& deck, double degrees) const {
        const double angle = degrees * std::numbers::pi / 180.0;
        const QPointF place(125.0 + 70.0 * std::sin(angle), 125.0 - 70.0 * std::cos(angle));
        return m_picture.pixelColor(m_live.graph(deck)->mapTo(m_window, place.toPoint()));
    }
    /// Where the needle was.
    double needle(const DeckKeys& deck) const { return m_points[deck.isA ? 0 : 1].back().angle; }

private:
    static constexpr std::size_t reach = 48; ///< points to either side that are to be alike

    const QPhrasing* areaAt(const DeckKeys& deck, double angle) const {
        int index = -1;
        return m_live.graph(deck)->colorAreas()->areaAt(angle, index);
    }
    // Where the display in use plots a point; none where it has no line.
    std::optional<double> plotted(const DeckKeys& deck, const CurvePoint& point) const {
        constexpr double aDegree = 2777.0;
        switch (Session::mode().displayMode()) {
        case ModelDisplay::NORMAL:
            return point.position;
        case ModelDisplay::DRUMMING:
            return reducedAngle(point.rawAngle) * aDegree;
        default:
            break;
        }
        if (const QPhrasing* area = areaAt(deck, point.angle)) {
            return (point.angle - area->angleStart()) / area->size() * 1000000.0;
        }
        return m_live.areas(deck).isEmpty() ? std::optional(reducedAngle(point.rawAngle) * aDegree)
                                            : std::nullopt;
    }
    // Whether the points around this one lie where it does, in one area, or in none, of one turn; and on one
    // straight line, as not every one of them is a corner of the curve.
    bool even(const DeckKeys& deck, std::size_t i) const {
        const CurvePointStore::View& all = m_points[deck.isA ? 0 : 1];
        const QPhrasing* area = areaAt(deck, all[i].angle);
        for (std::size_t j = 4; j <= reach; j += 4) {
            const double before = all[i - j].angle;
            const double after = all[i + j].angle;
            if (areaAt(deck, before) != area || areaAt(deck, after) != area ||
                std::abs(before + after - 2.0 * all[i].angle) > 1.0) {
                return false;
            }
        }
        return true;
    }

    const Live& m_live;
    std::array<CurvePointStore::View, 2> m_points;
    Connection* m_window;
    QImage m_picture;
};
