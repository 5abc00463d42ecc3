#include "takefile.h"

#include "curve/qcurve.h"
#include "model/constants.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtEndian>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 headerBytes = 8;
constexpr qint64 recordBytes = 23;

struct Header {
    std::int32_t bpm;
    std::int32_t count;
};

std::optional<Header> readHeader(const QString& path, QString& error) {
    // Not a pipe, which would be waited for, and not a device, which may have no end.
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        error = u"cannot read %1: it is no plain file"_s.arg(path);
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = u"cannot read %1: %2"_s.arg(path, file.errorString());
        return std::nullopt;
    }
    const QByteArray bytes = file.read(headerBytes);
    if (bytes.size() < headerBytes) {
        error = u"%1 is no curve file: it is too short"_s.arg(path);
        return std::nullopt;
    }
    const Header header{qFromLittleEndian<qint32>(bytes.constData()),
                        qFromLittleEndian<qint32>(bytes.constData() + 4)};
    const qint64 held = (file.size() - headerBytes) / recordBytes;
    if (header.count < 0 || header.count > held) {
        error = u"%1 is no curve file, or cut short: it promises %2 points and holds %3"_s.arg(path)
                    .arg(header.count)
                    .arg(held);
        return std::nullopt;
    }
    if (header.count < 2) {
        error = u"%1 holds no curve: %2 points"_s.arg(path).arg(header.count);
        return std::nullopt;
    }
    return header;
}

// What keeps the points from being a curve; empty if nothing does.
QString flawOf(const CurvePointStore::View& points) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!std::isfinite(points[i].position) || !std::isfinite(points[i].rawAngle)) {
            return u"point %1 has no position"_s.arg(i + 1);
        }
        if (i > 0 && points[i].time < points[i - 1].time) {
            return u"point %1 lies before the one ahead of it"_s.arg(i + 1);
        }
    }
    return points.back().time > points.front().time ? QString() : u"it lasts no time"_s;
}

} // namespace

std::optional<std::int32_t> readTake(const QString& path, QCurve& curve, QString& error) {
    const auto header = readHeader(path, error);
    if (!header) {
        return std::nullopt;
    }
    curve.loadFromFile(path, false);
    const CurvePointStore::View points = curve.points();
    if (curve.store().overflows() > 0 || points.size() < std::size_t(header->count)) {
        error = u"not enough memory for %1"_s.arg(path);
        return std::nullopt;
    }
    if (const QString flaw = flawOf(points); !flaw.isEmpty()) {
        error = u"%1 is broken: %2"_s.arg(path, flaw);
        return std::nullopt;
    }
    return header->bpm;
}

std::optional<double> rateInName(const QString& path) {
    // Device, time, device's name, channels and at last the rate.
    static const QRegularExpression recording(u"^-?\\d+_\\d{8}-\\d{6},\\d{3}_.*_-?\\d+p-?\\d+_(\\d+)$"_s);
    const QRegularExpressionMatch match = recording.match(QFileInfo(path).completeBaseName());
    const double rate = match.captured(1).toDouble();
    return match.hasMatch() && rate >= 8000.0 && rate <= 768000.0 ? std::optional(rate) : std::nullopt;
}

void restoreSpeeds(CurvePointStore& points, double sampleRate) {
    const double framesPerTurn = sampleRate * Constant::Audio::secondsPerTurn;
    const CurvePointStore::View all = points.view();
    points.amend([&](std::size_t i, CurvePoint& point) {
        const CurvePoint& from = i == 0 ? point : all[i - 1];
        const CurvePoint& to = i == 0 && all.size() > 1 ? all[1] : point;
        const double frames = to.time - from.time;
        point.pitch =
            frames > 0.0 ? (to.rawAngle - from.rawAngle) / 360.0 * framesPerTurn / frames : from.pitch;
        return true;
    });
}
