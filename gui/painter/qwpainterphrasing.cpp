#include "qwpainterphrasing.h"

#include "model/wholenumber.h"
#include "phrasing/managephrasing.h"
#include "state/pathfile.h"

#include <QPainter>

namespace {

constexpr int side = 96;         // of the widget, pixels
constexpr int margin = 3;        // around the disc: half the rim, pixels
constexpr double rimWidth = 6.0; // pixels
constexpr double hubWidth = 2.0;
constexpr double iconPart = 8.0; // the icon shows at this part of its size
constexpr QColor emptyDisc(43, 43, 43);
constexpr QColor light(175, 176, 177);

// Units of QPainter's angles: a sixteenth of a degree.
int sixteenths(double degrees) {
    return truncated(degrees * 16.0);
}

QPen outline(double width) {
    return QPen(light, width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

// The sign of a phrasing that comes with a sample.
void drawSampleIcon(QPainter& painter) {
    const QPixmap icon = pathIcon(QStringLiteral("wav.png"));
    if (icon.isNull()) {
        return;
    }
    const QSizeF size = QSizeF(icon.size()) / iconPart;
    const qreal ratio = painter.deviceTransform().m11(); // sharp on a dense screen as well
    const QPixmap small =
        icon.scaled((size * ratio).toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRectF(QPointF(0.0, 0.0), size), small, QRectF(small.rect()));
}

} // namespace

QWPainterPhrasing::QWPainterPhrasing(const ManagePhrasing* phrasing, QWidget* parent)
    : QWidget(parent), m_phrasing(phrasing) {
    setFixedSize(side, side);
}

void QWPainterPhrasing::paintEvent(QPaintEvent*) {
    static const QBrush background(QColor(53, 53, 53));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), background);

    const QPhrasingList areas = m_phrasing == nullptr ? QPhrasingList() : m_phrasing->listPhrasing();
    const int cx = width() / 2;
    const int cy = height() / 2;
    const int r = cy - margin;
    const QRect disc(cx - r, margin, 2 * r, 2 * r);
    painter.setPen(Qt::NoPen);
    painter.setBrush(areas.isEmpty() ? emptyDisc : light);
    painter.drawEllipse(disc);
    for (const QPhrasingPtr& area : areas) {
        painter.setBrush(area->color());
        painter.drawPie(disc, sixteenths(90.0 - area->angleStart()), sixteenths(-area->size()));
    }

    painter.setPen(outline(hubWidth));
    painter.setBrush(light);
    painter.drawEllipse(QRect(QPoint(cx - 6, cy - 6), QPoint(cx + 5, cy + 5)));
    painter.setPen(outline(rimWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(disc);

    if (m_phrasing != nullptr && !m_phrasing->scratchTools().isEmpty()) {
        drawSampleIcon(painter);
    }
}
