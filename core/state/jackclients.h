#pragma once

/// Makes JACK's client library safe for a program whose own libraries, PortAudio and RtMidi, are clients of
/// it side by side. Two things in it end such a program when the sound server stumbles or goes:
///
/// - Once one client has lost the server, the next client that is opened deletes all others of the process,
/// under
///   the hands of the libraries that own them. So from that moment on no client is opened until all are
///   closed.
/// - A server that stumbles for ten of its periods (27 ms at 64 frames) answers the end of a client or of a
/// port
///   with an error, and PortAudio asserts that it doesn't. So the libraries hear success: there is nothing
///   that they could do about it.
///
/// It is done by functions of JACK's names, which the linker finds before JACK's own in every program that
/// links them and which pass the calls on; where there is no JACK nobody calls them. Call this once before
/// one of the libraries is used, so that they are linked. Thread-safe: yes.
void guardJackClients();
