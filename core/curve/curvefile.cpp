// The curve file: i32 tempo, i32 count, then 23 bytes a point, little-endian.

#include "angle.h"
#include "model/constants.h"
#include "model/partfile.h"
#include "model/wholenumber.h"
#include "qcurve.h"
#include "state/recordingloopertraining.h"

#include <QDataStream>
#include <QFile>

#include <algorithm>

namespace {

constexpr qint64 headerBytes = 8;
constexpr qint64 recordBytes = 23;

// The file counts the directions the other way round: 0 and 1 change places, anything else is undefined.
std::int32_t otherDirection(std::int32_t direction) {
    return direction == 1 ? 0 : direction == 0 ? 1 : 2;
}

} // namespace

bool QCurve::saveToPath(const QString& path) const {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    const CurvePointStore::View all = points();
    stream << truncated(m_recordingLooperTraining.bpmEffective()) << static_cast<qint32>(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        const CurvePoint& point = all[i];
        stream << truncated(point.time) << point.position << point.rawAngle
               << static_cast<qint16>(otherDirection(point.direction))
               << static_cast<qint8>(point.soundOn != 0);
    }
    const bool flushed = file.flush() && stream.status() == QDataStream::Ok;
    file.close();
    if (flushed && file.error() == QFileDevice::NoError) {
        return true;
    }
    // A full disk: the count is put right, so that no reader takes the missing points for zeros.
    if (keepPart(file, headerBytes + recordBytes - 1) && file.open(QIODevice::ReadWrite)) {
        file.seek(headerBytes / 2);
        QDataStream count(&file);
        count.setByteOrder(QDataStream::LittleEndian);
        count << static_cast<qint32>((file.size() - headerBytes) / recordBytes);
    }
    return false;
}

void QCurve::loadFromFile(const QString& fileName, bool loadBpm) {
    resetCurve();
    m_points.renew(0);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return;
    }
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    qint32 bpm = 0;
    qint32 count = 0;
    stream >> bpm >> count;
    if (loadBpm && bpm >= Constant::Tempo::lowest && bpm <= Constant::Tempo::highest) {
        m_recordingLooperTraining.setBpmValue(bpm);
    }
    const qint64 held = std::max<qint64>(0, (file.size() - headerBytes) / recordBytes);
    const bool trusted = count >= 0 && static_cast<std::size_t>(count) <= CurvePointStore::firstBlock;
    const auto records = static_cast<std::size_t>(trusted ? count : held);
    m_points.renew(records);
    // With the last one, of which only a part may be there.
    const qint64 begun = std::max<qint64>(0, (file.size() - headerBytes + recordBytes - 1) / recordBytes);
    const std::size_t there = std::min(records, static_cast<std::size_t>(begun));
    for (std::size_t i = 0; i < there; ++i) {
        qint32 time = 0;
        qint16 direction = 0;
        qint8 soundOn = 0;
        CurvePoint point;
        stream >> time >> point.position >> point.rawAngle >> direction >> soundOn;
        point.time = time;
        point.angle = reducedAngle(point.rawAngle);
        point.direction = otherDirection(direction);
        point.soundOn = soundOn != 0;
        m_points.append(point);
    }
    m_points.appendZeros(records - there);
}
