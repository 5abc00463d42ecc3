#pragma once

#include "capsule.h"
#include "pixelgroups.h"

#include <QImage>
#include <QPainter>

#include <bitset>
#include <vector>

/// A transparent picture that moves to the left by whole pixels without being copied. It is made of upright
/// tiles: what has left at the left edge is emptied and comes in again at the right one.
class ScrollPicture {
public:
    /// Pixels. Long rows are read faster when the picture is laid down, short ones are faster to draw on.
    static constexpr int tileWidth = PixelGroups::wordPixels;

    QSize size() const { return m_size; }
    /// Empties the picture and gives it that size.
    void reset(QSize size);
    /// Moves by 0 or more columns.
    void scroll(int columns);
    /// Empties the columns before `to`.
    void clearBefore(int to);
    /// Draws onto the columns before `to`.
    void draw(const Capsule& capsule, QRgb premultiplied, int to);
    /// Draws the picture with its corner at 0, 0 of the painter: straight into the pixels of an image, if the
    /// painter was opened on one, outside any paint event of it, and does no more than to lay pixels on them.
    void paintTo(QPainter& painter);

private:
    static constexpr int groupsOfTile = tileWidth / PixelGroups::size;

    struct Tile {
        QImage image;
        int top = 0; ///< the rows from here up to and not including `bottom` may be drawn on, no others are
        int bottom = 0;
        bool stale = false;                ///< counts as empty, and is emptied before it is drawn on
        PixelGroups groups;                ///< of the image, but for those that have changed since
        std::bitset<groupsOfTile> changed; ///< by their number from the left
        bool painted = false;              ///< since it was emptied
        void empty();
        void clear(int from, int to);
        void change(int from, int to);
        bool updateGroups();
    };
    Tile& tile(int place) { return m_tiles[std::size_t(m_first + place) % m_tiles.size()]; }

    QSize m_size;
    std::vector<Tile> m_tiles;
    int m_first = 0;  ///< of the tiles, the leftmost
    int m_origin = 0; ///< its column that is the picture's first
};
