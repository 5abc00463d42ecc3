#pragma once

/// How much less a test does where a sanitizer makes everything some ten times slower.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr int loadFactor = 10;
#else
inline constexpr int loadFactor = 1;
#endif
