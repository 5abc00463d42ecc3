#pragma once

/// Gains of the pitch filter, and the floor of the gains of whatever tracks it.
inline constexpr double pitchAlpha = 1.0 / 512;   ///< position
inline constexpr double pitchBeta = 1.0 / 131072; ///< speed
