#pragma once
// The arithmetic of the grid: where its lines stand and what their labels say. Times are sample frames of the
// deck.

#include <QString>

#include <array>
#include <span>
#include <vector>

/// What the level lines may be apart, in value units.
inline constexpr std::array<double, 9> yGridSteps{10.0,      100.0,      1000.0,      10000.0,     100000.0,
                                                  1000000.0, 10000000.0, 100000000.0, 1000000000.0};

/// Frames between two upright lines: the first of 1, 4, 10, 60, 600 and 3600 beats above an eightieth of the
/// range, else 3600 beats. A bar has four beats; the others only thin the grid out.
double xGridStep(double xMin, double xMax, double beatLength);

/// Value units between two level lines: the first step above a twentieth of the range, else the last one; 1
/// for an empty list.
double yGridStep(double yMin, double yMax, std::span<const double> steps = yGridSteps);

/// No screen has room for more lines. Beyond it there are none: they would melt into one surface.
inline constexpr int maxGridTicks = 16384;

/// The multiples of `step` from `from` to `to`, both included, rising; none for a step below 1.
std::vector<double> gridTicks(double step, double from, double to);

/// Beats from the first click to a frame; negative before it, 0 without a tempo.
double gridBeat(double frame, double firstMetronome, double sampleRate, double bpm);

/// The number that stands below an upright line.
QString beatText(double beat);

/// Whether the line above that number is a heavy one: each bar's first, and all that are too far away to be
/// counted in 32 bits.
bool isHeavyBeat(const QString& beatText);

/// Whole thousands, millions, billions and trillions with their letter, everything else in full.
QString shortNumber(double value);
