#pragma once
// Which of the texts beside the plot have room, and where. Pixels of the widget.

#include <algorithm>
#include <vector>

/// From a text to its neighbour in the row, and to the widget's edges.
inline constexpr double labelGap = 3.0;

/// What a text takes of its row.
struct LabelSpan {
    double left = 0.0;
    double right = 0.0;
    bool operator==(const LabelSpan&) const = default;
};

/// A text with its middle at `center`, moved so far that the widget's edges cut nothing off.
inline LabelSpan spanWithin(double center, double textWidth, double widgetWidth) {
    const double last = std::max(labelGap, widgetWidth - labelGap - textWidth);
    const double left = std::clamp(center - textWidth / 2.0, labelGap, last);
    return {left, left + textWidth};
}

/// Texts in one row, which take their places in the order of importance: none lies on another.
class LabelRow {
public:
    /// False for a text that comes too near to one that has its place: it isn't to be drawn.
    bool take(const LabelSpan& span) {
        if (std::any_of(m_taken.begin(), m_taken.end(), [&](const LabelSpan& taken) {
                return span.left < taken.right + labelGap && taken.left < span.right + labelGap;
            })) {
            return false;
        }
        m_taken.push_back(span);
        return true;
    }

private:
    std::vector<LabelSpan> m_taken;
};

/// Every how-manieth of the labels of lines that are `distance` apart is shown, so that texts of that height
/// don't touch.
inline int labelStride(double distance, double textHeight) {
    constexpr int widest = 10;
    for (const int stride : {1, 2, 5}) {
        if (stride * distance >= textHeight) {
            return stride;
        }
    }
    return widest;
}
