#pragma once

#include "drawoptions.h"

#include "curve/curvepointstore.h"

#include <QImage>
#include <QString>

#include <memory>

class QWPainter;

/// The picture of a take: the program's own graph, set up as the options say. One a process, as the shared
/// state is; QApplication and a data folder that isn't the user's come first.
class TakePicture {
public:
    explicit TakePicture(DrawOptions options);
    ~TakePicture();
    TakePicture(const TakePicture&) = delete;
    TakePicture& operator=(const TakePicture&) = delete;

    /// Reads the files and sets the graph up. False, with error() and wrongUsage(), if that can't be done.
    bool load();
    /// What the graph draws; a null image if there is no memory for it.
    QImage image();

    const QString& error() const { return m_error; } ///< one line
    bool wrongUsage() const { return m_wrongUsage; } ///< not a file but an option is to blame
    /// What was drawn, a line each: points, tempo, beats, pixels, and whether the reference can't be seen.
    QString facts() const;

private:
    void applySettings() const;
    bool readCurves();
    bool readAreas();
    bool readSample();
    void setTempo(std::int32_t ofTake);
    bool chooseRange();
    void placeCursor() const;
    /// The normal display moves a reference up to the take's start, but not down.
    bool referenceIsLost() const;
    bool fail(const QString& message, bool wrongUsage = false);

    const DrawOptions m_options;
    CurvePointStore m_main;
    CurvePointStore m_secondary;
    std::unique_ptr<QWPainter> m_graph; ///< reads the stores: goes before them
    double m_beatLength = 0.0;          ///< frames
    bool m_ownTempo = false;            ///< the tempo is that of the take
    QString m_error;
    bool m_wrongUsage = false;
};
