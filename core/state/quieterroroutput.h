#pragma once

/// Turns the process's error output away while any of these lives. For the libraries below that print while
/// they look for hardware or for a server; keep it around their calls alone. May nest, on one thread or on
/// several. A process that dies meanwhile is heard: an abort (an assert, a terminate, a broken heap) or a
/// fault first tells the user the last 4096 bytes of what was turned away. Thread-safe: yes. Realtime-safe:
/// no.
class QuietErrorOutput {
public:
    QuietErrorOutput();
    ~QuietErrorOutput();
    QuietErrorOutput(const QuietErrorOutput&) = delete;
    QuietErrorOutput& operator=(const QuietErrorOutput&) = delete;
};
