#include "managephrasing.h"

#include "phrasingpalette.h"

#include "curve/angle.h"
#include "module/wavedata.h"
#include "state/pathfile.h"
#include "state/singleton.h"
#include "state/vinyl.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

constexpr double turn = 360.0; // degrees

// A name that leaves the folder isn't the name of a file in it.
bool staysInFolder(const QString& name) {
    const QString clean = QDir::cleanPath(name);
    return !QDir::isAbsolutePath(clean) && clean != QStringLiteral("..") &&
           !clean.startsWith(QStringLiteral("../"));
}

// Whether some area starts within another one: at or behind its start and before its end. Of two areas that
// overlap one always does. In order of their starts, so that a file of ten thousand areas takes no time.
bool overlapping(const QPhrasingList& areas) {
    std::vector<const QPhrasing*> byStart;
    for (const QPhrasingPtr& area : areas) {
        if (area->angleStart() == area->angleStart()) { // not a number: neither before nor behind anything
            byStart.push_back(area.get());
        }
    }
    const auto startsBefore = [](const QPhrasing* a, const QPhrasing* b) {
        return a->angleStart() < b->angleStart();
    };
    std::sort(byStart.begin(), byStart.end(), startsBefore);
    double furthestEnd = -std::numeric_limits<double>::infinity(); // of the areas that start before `first`
    for (auto first = byStart.cbegin(); first != byStart.cend();) {
        const double start = (*first)->angleStart();
        if (furthestEnd > start) {
            return true;
        }
        const auto next = std::upper_bound(first, byStart.cend(), *first, startsBefore);
        const bool several =
            std::any_of(first, next, [&](const QPhrasing* a) { return a->id() != (*first)->id(); });
        for (; first != next; ++first) {
            if (several && (*first)->angleEnd() > start) {
                return true;
            }
            furthestEnd = std::max(furthestEnd, (*first)->angleEnd());
        }
    }
    return false;
}

} // namespace

ManagePhrasing::ManagePhrasing(ModelGraph::EnumGraph deck, QObject* parent) : QObject(parent), m_deck(deck) {}

qsizetype ManagePhrasing::placeOf(double angle) const {
    for (qsizetype i = 0; i < m_listPhrasing.size(); ++i) {
        if (m_listPhrasing[i]->holds(angle)) {
            return i;
        }
    }
    return -1;
}

const QPhrasing* ManagePhrasing::areaAt(double angle, int& index) const {
    index = static_cast<int>(placeOf(angle));
    return index < 0 ? nullptr : m_listPhrasing[index].get();
}

void ManagePhrasing::loadScratchToolWav() {
    m_scratchToolWav.reset();
    const QString path = pathScratchTools(m_scratchTools);
    if (!staysInFolder(m_scratchTools) || !QFileInfo(path).isFile()) {
        return;
    }
    std::shared_ptr<const WaveData> wave = readWave(path);
    if (!wave->isEmpty()) {
        m_scratchToolWav = std::move(wave);
    }
}

bool ManagePhrasing::isValid() const {
    const bool wrongSize =
        std::any_of(m_listPhrasing.cbegin(), m_listPhrasing.cend(),
                    [](const QPhrasingPtr& a) { return a->size() == 0.0 || a->size() > turn; });
    return !wrongSize && !overlapping(m_listPhrasing);
}

double ManagePhrasing::currentAngle() const {
    // The decoder has taken the zero mark off already, for the point as for this angle: an area ends where
    // the curve is. Taking it off here as well would shift every area by the mark.
    return reducedAngle(Singleton::instance().vinyl()->angle(m_deck));
}

QColor ManagePhrasing::nextFreeColor() const {
    QList<QColor> palette = phrasingPalette();
    const QColor fallback = palette.constFirst();
    for (const QPhrasingPtr& area : m_listPhrasing) {
        palette.removeOne(area->color());
    }
    return palette.value(0, fallback);
}

double ManagePhrasing::gapStart(double angle) const {
    bool found = false;
    double start = 0.0;
    for (const QPhrasingPtr& area : m_listPhrasing) {
        if (area->angleEnd() <= angle && (!found || area->angleEnd() > start)) {
            found = true;
            start = area->angleEnd();
        }
    }
    return start;
}

double ManagePhrasing::gapEnd(double angle) const {
    bool found = false;
    double end = turn;
    for (const QPhrasingPtr& area : m_listPhrasing) {
        if (area->angleStart() >= angle && (!found || area->angleStart() < end)) {
            found = true;
            end = area->angleStart();
        }
    }
    return end;
}

// An area of no size can't be read back from a file: with the record at rest a second press would make one.
void ManagePhrasing::append(double angleStart, double angleEnd) {
    if (angleStart == angleEnd) {
        return;
    }
    m_listPhrasing.append(std::make_shared<QPhrasing>(QString(), nextFreeColor(), angleStart, angleEnd));
}

void ManagePhrasing::initAreas() {
    m_listPhrasing.clear();
    Q_EMIT s_Update();
}

void ManagePhrasing::addArea() {
    const double angle = currentAngle();
    const qsizetype place = placeOf(angle);
    if (place < 0) {
        append(gapStart(angle), angle);
    } else if (m_listPhrasing[place]->angleStart() != angle) { // else nothing would be left of it
        m_listPhrasing[place]->setAngleEnd(angle);
    }
    Q_EMIT s_Update();
}

void ManagePhrasing::addAreaOnAllEmptyArea() {
    const double angle = currentAngle();
    if (placeOf(angle) < 0) {
        append(gapStart(angle), gapEnd(angle));
    }
    Q_EMIT s_Update();
}

void ManagePhrasing::defineAngleStart() {
    const double angle = currentAngle();
    const qsizetype place = placeOf(angle);
    if (place >= 0) {
        m_listPhrasing[place]->setAngleStart(angle);
    }
    Q_EMIT s_Update();
}

void ManagePhrasing::deleteArea() {
    const qsizetype place = placeOf(reducedAngle(currentAngle()));
    if (place >= 0) {
        m_listPhrasing.removeAt(place);
    }
    Q_EMIT s_Update();
}

void ManagePhrasing::setListPhrasing(const QPhrasingList& listPhrasing) {
    m_listPhrasing = listPhrasing;
    Q_EMIT s_UpdateListPhrasing();
}
