#pragma once

/// Points the process's error output nowhere while it lives: around calls of a library that prints there. One
/// at a time, so on one thread only: the GUI thread.
class QuietErrorOutput {
public:
    QuietErrorOutput();
    ~QuietErrorOutput();
    QuietErrorOutput(const QuietErrorOutput&) = delete;
    QuietErrorOutput& operator=(const QuietErrorOutput&) = delete;

private:
    [[maybe_unused]] int m_saved = -1; ///< the true error output
};
