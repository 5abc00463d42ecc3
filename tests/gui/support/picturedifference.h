#pragma once
// How far two pictures of one size and 32 bits a pixel lie apart.

#include <QImage>

#include <algorithm>
#include <cstdlib>

struct PictureDifference {
    int largest = 0;   ///< of a colour, 0 to 255
    double mean = 0.0; ///< of all colours of all pixels
};

inline PictureDifference differenceOf(const QImage& a, const QImage& b) {
    PictureDifference difference;
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        const auto* rowA = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const auto* rowB = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = rowA[x];
            const QRgb q = rowB[x];
            for (const int of : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) {
                difference.largest = std::max(difference.largest, std::abs(of));
                sum += std::abs(of);
            }
        }
    }
    difference.mean = sum / (3.0 * a.width() * a.height());
    return difference;
}
