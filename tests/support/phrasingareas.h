#pragma once
// Areas for the tests of the phrasing.

#include "phrasing/qphrasing.h"

#include <QRandomGenerator>

#include <algorithm>

inline QPhrasingPtr area(double angleStart, double angleEnd, QColor color = QColor(1, 2, 3),
                         const QString& label = QString()) {
    return std::make_shared<QPhrasing>(label, color, angleStart, angleEnd);
}

inline QColor randomColor(QRandomGenerator& random) {
    return QColor(random.bounded(256), random.bounded(256), random.bounded(256));
}

/// Up to `most` areas of one turn that are valid together: in any order, some of them touching.
inline QPhrasingList randomAreas(QRandomGenerator& random, int most) {
    QList<double> cuts;
    for (int i = random.bounded(2 * most + 1); i > 0; --i) {
        cuts << random.generateDouble() * 360.0;
    }
    std::sort(cuts.begin(), cuts.end());
    cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
    QPhrasingList areas;
    for (qsizetype i = 0; i + 1 < cuts.size() && areas.size() < most; ++i) {
        if (random.bounded(2) == 0) {
            areas.insert(random.bounded(int(areas.size()) + 1),
                         area(cuts[i], cuts[i + 1], randomColor(random)));
        }
    }
    return areas;
}
