#pragma once

/// Points the process's error output at nothing while any of these lives. For the libraries below that print
/// while they look for hardware or for a server; keep it around their calls alone. May nest, on one thread or
/// on several. Thread-safe: yes. Realtime-safe: no.
class QuietErrorOutput {
public:
    QuietErrorOutput();
    ~QuietErrorOutput();
    QuietErrorOutput(const QuietErrorOutput&) = delete;
    QuietErrorOutput& operator=(const QuietErrorOutput&) = delete;
};
