#pragma once

#include <cmath>

/// The number that counts a session in: it appears large and shrinks to its place.
class CountIn {
public:
    static constexpr int tickMs = 16;

    /// A new number; 0 ends the count and shows nothing.
    void show(int count) {
        m_number = count;
        m_scale = 2.6F;
    }
    /// One tick of the animation. False when the number has arrived.
    bool step() {
        m_scale += (1.0F - m_scale) * 0.15F;
        if (std::abs(m_scale - 1.0F) < 0.01F) {
            m_scale = 1.0F;
            return false;
        }
        return true;
    }
    bool visible() const { return m_number > 0; }
    int number() const { return m_number; } ///< -1 before the first count
    float scale() const { return m_scale; } ///< 1 at rest

private:
    int m_number = -1;
    float m_scale = 1.0F;
};
