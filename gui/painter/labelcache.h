#pragma once

#include <QFont>
#include <QHash>
#include <QPainter>
#include <QStaticText>

/// Draws short texts that come back with every picture: each is laid out once, for the painter's font. It
/// keeps fonts of the thread that draws, and is emptied there.
class LabelCache {
public:
    /// Writes in the painter's font and pen. `rect` and `flags` as for QPainter::drawText, but what doesn't
    /// fit isn't cut off.
    void draw(QPainter& painter, const QRectF& rect, Qt::Alignment flags, const QString& text);
    /// Pixels that the text takes.
    QSizeF size(const QPainter& painter, const QString& text) { return layout(painter, text).size(); }
    double width(const QPainter& painter, const QString& text) { return size(painter, text).width(); }
    /// How often a text was laid out.
    unsigned layouts() const { return m_layouts; }

private:
    static constexpr int maxTexts = 1024; ///< a long session has countless beats

    /// Good until the next call.
    const QStaticText& layout(const QPainter& painter, const QString& text);

    QHash<QString, QStaticText> m_texts;
    QFont m_font;
    int m_dotsPerInch = 0;
    unsigned m_layouts = 0;
};

/// What one thread has laid out of a graph's texts.
struct GraphLabels {
    LabelCache grid;  ///< and the cursor's
    LabelCache names; ///< of the areas
};
