#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QUuid>

#include <memory>

/// One area of a turn of the record: a stretch of angles with a name and a colour. GUI thread; read
/// by what draws the graphs, too, for which that one waits.
class QPhrasing {
public:
    /// `angleStart` and `angleEnd` in degrees. Every area gets an id of its own; no file keeps it.
    QPhrasing(QString label, QColor color, double angleStart, double angleEnd);

    const QString& label() const { return m_label; }
    const QColor& color() const { return m_color; }
    double angleStart() const { return m_angleStart; } ///< degrees, the first angle in the area
    double angleEnd() const { return m_angleEnd; }     ///< degrees, the first angle behind it
    QUuid id() const { return m_id; }

    void setLabel(const QString& label) { m_label = label; }
    void setColor(const QColor& color) { m_color = color; }
    void setAngleStart(double angle) { m_angleStart = angle; }
    void setAngleEnd(double angle) { m_angleEnd = angle; }

    /// Degrees; negative for an area that a file gives backwards.
    double size() const { return m_angleEnd - m_angleStart; }
    /// Nothing wraps: no angle lies in an area that starts behind its end.
    bool holds(double angle) const { return angle >= m_angleStart && m_angleEnd > angle; }

private:
    QString m_label;
    QColor m_color;
    double m_angleStart;
    double m_angleEnd;
    QUuid m_id;
};

/// An area may show in several lists at once: an edit shows in all of them, and a list that drops it leaves
/// the others whole.
using QPhrasingPtr = std::shared_ptr<QPhrasing>;
using QPhrasingList = QList<QPhrasingPtr>;
