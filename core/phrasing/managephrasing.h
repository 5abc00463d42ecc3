#pragma once

#include "qphrasing.h"

#include "model/modelgraph.h"

#include <QObject>

#include <memory>

class WaveData;

/// One editable list of areas, in the order of their making: that of a deck, on which the user works live, or
/// what a phrasing file was read into. GUI thread; read by what draws the graphs, too, for which that one
/// waits.
class ManagePhrasing : public QObject {
    Q_OBJECT
public:
    /// `deck`: whose record the slots read; NOT_USED for a list that was read from a file.
    explicit ManagePhrasing(ModelGraph::EnumGraph deck, QObject* parent = nullptr);

    ModelGraph::EnumGraph deck() const { return m_deck; }
    const QPhrasingList& listPhrasing() const { return m_listPhrasing; }
    /// The first area in the list that holds the angle (degrees, 0 to 360), and its place; null and -1 when
    /// none does. Called for each drawn point. The area is the list's.
    const QPhrasing* areaAt(double angle, int& index) const;

    /// Full path of the file that the list was read from; empty for a deck's.
    const QString& path() const { return m_path; }
    const QString& name() const { return m_name; }
    /// Name of a WAV in the folder "Scratch Tools", or empty.
    const QString& scratchTools() const { return m_scratchTools; }
    /// The sound of that name once it was loaded, or null. It outlives this list wherever it is used.
    std::shared_ptr<const WaveData> scratchToolWav() const { return m_scratchToolWav; }
    void setPath(const QString& path) { m_path = path; }
    void setName(const QString& name) { m_name = name; }
    void setScratchTools(const QString& scratchTools) { m_scratchTools = scratchTools; }

    /// Reads the WAV that scratchTools() names. A name that is no file in that folder, or a file without a
    /// sample, gives none.
    void loadScratchToolWav();
    /// False where an area has no size or more than a turn, or where two areas overlap. Areas may touch, and
    /// one that starts behind its end counts as good.
    bool isValid() const;

    /// What the slots work at: the angle that the deck's points carry now, measured from the user's zero
    /// mark; degrees from 0 up to but not including 360. The last known one while the deck rests.
    double currentAngle() const;
    /// The colour that the next new area gets: the first one of the palette that the list hasn't used up.
    QColor nextFreeColor() const;

Q_SIGNALS:
    /// The list or an area changed.
    void s_Update();
    /// The whole list was replaced.
    void s_UpdateListPhrasing();

public Q_SLOTS:
    /// Empties the list. Whoever else shows the areas keeps them.
    void initAreas();
    /// Ends the area at the present angle there; without one, makes an area from the end of the nearest area
    /// before it, or from 0, up to it. What would get no size is left: a second press at rest changes
    /// nothing.
    void addArea();
    /// Fills the gap around the present angle with a new area; there may be none.
    void addAreaOnAllEmptyArea();
    /// Moves the start of the area at the present angle to it.
    void defineAngleStart();
    void deleteArea();
    /// The areas are shared, not copied.
    void setListPhrasing(const QPhrasingList& listPhrasing);

private:
    qsizetype placeOf(double angle) const; ///< in the list, of the first area that holds the angle, or -1
    double gapStart(double angle) const;
    double gapEnd(double angle) const;
    void append(double angleStart, double angleEnd);

    ModelGraph::EnumGraph m_deck;
    QPhrasingList m_listPhrasing;
    QString m_path;
    QString m_name;
    QString m_scratchTools;
    std::shared_ptr<const WaveData> m_scratchToolWav;
};
