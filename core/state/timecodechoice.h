#pragma once

#include <QString>

class Mode;

/// Tells Mode whether a timecode keeps the vinyl's zero angle: the two full DVS records do. GUI thread.
void applyTimecodeChoice(const QString& timecode, Mode& mode);
