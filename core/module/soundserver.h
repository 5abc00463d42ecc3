#pragma once

#include <QObject>

/// The sound server below PortAudio (JACK), where there is one. Once it has gone, closing a stream on it or
/// ending the library hangs for minutes and then ends the process, so neither is done: the library is left
/// as it stands until the process ends.
class SoundServer : public QObject {
    Q_OBJECT
public:
    static SoundServer& instance();

    /// The device lies on the server. PortAudio must be up. The library's thread.
    static bool carries(int device);
    /// The server does what it is asked to: opens a stream and closes it again. True without a server. Hangs
    /// for as long as the server stands still. The library's thread.
    static bool answers();

    /// The server has gone: nobody calls PortAudio any more. Thread-safe.
    void lose();
    bool lost() const;

Q_SIGNALS:
    /// Sent once, from the library's thread.
    void s_Lost();

private:
    SoundServer() = default;
};
