#include "phrasingpalette.h"

QList<QColor> phrasingPalette() {
    const QColor red(208, 0, 24);
    const QColor yellow(254, 194, 0);
    const QColor teal(1, 194, 193);
    const QColor orange(255, 123, 0);
    const QList<QColor> tints = {
        red,    QColor(220, 64, 82),  QColor(232, 128, 139), // lighter twice
        yellow, QColor(254, 209, 64), QColor(255, 225, 128), //
        teal,   QColor(65, 209, 209), QColor(128, 225, 224), //
        orange, QColor(255, 156, 64), QColor(255, 189, 128),
    };
    return QList<QColor>{red, yellow, teal, orange} + tints + tints;
}
