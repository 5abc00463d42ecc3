#pragma once

#include "curve/curvepointstore.h"

#include <QString>

#include <cstdint>
#include <optional>

class QCurve;

/// Reads a curve file into `curve`, after a look at whether it is one: a plain file that holds the points it
/// promises, at least two of them, with times that rise and positions and angles that are numbers. What lies
/// behind the points counts for nothing: a full disk may have left a part of one. Returns the tempo that the
/// file was written with, in beats a minute; none, with a one-line message, for any other file.
std::optional<std::int32_t> readTake(const QString& path, QCurve& curve, QString& error);

/// The sample rate in a name that the program gives a recording, in Hz; none in any other name.
std::optional<double> rateInName(const QString& path);

/// Gives the points the speeds that a curve file doesn't hold: those of the angles, 1 at 33 1/3 turns a
/// minute. `sampleRate` in Hz.
void restoreSpeeds(CurvePointStore& points, double sampleRate);
