#pragma once

#include <QColor>
#include <QList>

/// The colours of new areas in the order in which they are given out, all opaque: red, yellow, teal and
/// orange first, then each of them twice with its two lighter tints. A colour that stands here several times
/// takes as many areas to be used up.
QList<QColor> phrasingPalette();
