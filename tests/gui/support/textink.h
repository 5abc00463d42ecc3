#pragma once
// Whether there are letters at a place of a picture, whatever their font.

#include <QColor>
#include <QImage>
#include <QRectF>

/// A place (pixels of the widget) with a text, or without one.
struct PlacedText {
    QRectF where;
    bool there = true;
    bool red = false; ///< its colour; grey otherwise
};

/// Pixels of the text's colour in its place.
inline int inkIn(const QImage& picture, const PlacedText& text) {
    const double ratio = picture.devicePixelRatio();
    const QRect pixels = QRectF(text.where.topLeft() * ratio, text.where.size() * ratio).toRect() &
                         QRect(QPoint(0, 0), picture.size());
    int ink = 0;
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const bool isRed = qRed(pixel) > qGreen(pixel) + 60;
            const bool isGround = qRed(pixel) < 70 && qGreen(pixel) < 70 && qBlue(pixel) < 70;
            ink += text.red ? isRed : !isGround && !isRed;
        }
    }
    return ink;
}
