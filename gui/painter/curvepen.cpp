#include "curvepen.h"

namespace {

constexpr int closedWidth = 1;
constexpr int directWaveWidth = 3;

QColor inverted(const QColor& color) {
    return QColor(255 - color.red(), 255 - color.green(), 255 - color.blue(), color.alpha());
}

int widthOf(ModelGraph::EnumGraph item, bool soundOn, const GraphOptions& options) {
    if (!soundOn) {
        return closedWidth;
    }
    return item == ModelGraph::WAV_DIRECT ? directWaveWidth : options.curveOnSize;
}

} // namespace

const QPen& CurvePen::pen(ModelGraph::EnumGraph item, bool soundOn, const QColor& color,
                          const GraphOptions& options) {
    const Key key{item,
                  soundOn,
                  !soundOn && options.curveCrossFaderOffInvertColor,
                  color,
                  widthOf(item, soundOn, options),
                  soundOn || options.curveCrossFaderOff};
    if (m_key != key) {
        m_key = key;
        m_pen = QPen(key.invert ? inverted(color) : color, key.width, key.drawn ? Qt::SolidLine : Qt::NoPen,
                     Qt::RoundCap, Qt::RoundJoin);
        ++m_made;
    }
    return m_pen;
}
