#pragma once
// Stands in for the MIDI library's ports, so that a test decides which there are, sends their messages itself
// and lets calls fail or hang. The constructor in fakertmidi.cpp takes the library's place in the test
// programs that link it; what lies above the ports (callbacks, errors, message types) stays the library's
// own.

#include <rtmidi/RtMidi.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <vector>

class FakeMidiPort;

/// The two interfaces that a system offers, and what was done to them.
struct FakeMidi {
    struct Interface {
        bool opens = true; ///< the constructor succeeds
        std::vector<std::string> ports;
    };
    std::map<RtMidi::Api, Interface> interfaces;
    bool portsOpen = true;         ///< openPort succeeds
    std::atomic<bool> hang{false}; ///< inputs don't close while this is set

    std::vector<std::pair<RtMidi::Api, std::string>> made; ///< constructor calls: interface and client name
    std::vector<unsigned> queueLimits;
    std::atomic<int> alive{0}; ///< inputs
    std::vector<std::pair<RtMidi::Api, unsigned>> opened;

    static FakeMidi& instance() {
        static auto& fake = *new FakeMidi; // outlives every thread that may still call
        return fake;
    }
    /// Only when no input is alive.
    void reset() {
        interfaces = {{RtMidi::LINUX_ALSA, {}}, {RtMidi::UNIX_JACK, {}}};
        portsOpen = true;
        hang = false;
        made.clear();
        queueLimits.clear();
        opened.clear();
    }
    /// One message of the open port, as the library's thread would bring it. False if no port is open.
    bool send(std::vector<unsigned char> bytes);
    bool portIsOpen() {
        const std::scoped_lock locked(lock);
        return open != nullptr;
    }
    /// The message types that the open port drops: 1 system-exclusive, 2 timing, 4 active sensing.
    int ignored();

    std::mutex lock; // a port that is being closed brings nothing any more
    FakeMidiPort* open = nullptr;
};
