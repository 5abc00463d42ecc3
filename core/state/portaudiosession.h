#pragma once

/// PortAudio, initialised for as long as this object lives. Initialisations count, so several may live at
/// once. What the library's back ends print while they look for hardware is kept off the program's error
/// output. GUI thread.
class PortAudioSession {
public:
    PortAudioSession();
    ~PortAudioSession();
    PortAudioSession(const PortAudioSession&) = delete;
    PortAudioSession& operator=(const PortAudioSession&) = delete;

    /// False if the library couldn't start, or must not be touched at present (see block).
    bool ok() const { return m_ok; }
    /// Leaves the initialisation standing: somebody else ends it.
    void release() { m_ok = false; }

    /// While a sound server keeps a call of the library from returning, or has gone, nobody may call the
    /// library: no session starts until as many have unblocked as have blocked. Thread-safe.
    static void block();
    static void unblock();
    static bool blocked();

private:
    bool m_ok = false;
};
