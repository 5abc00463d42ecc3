#pragma once
// Stands in for the MIDI library's ports, so that a test decides which there are, sends their messages itself
// and lets calls fail or hang. Include it in one source of a test program: the constructor here takes the
// library's place; what lies above the ports (callbacks, errors, message types) stays the library's own.

#include <rtmidi/RtMidi.h>

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>
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

class FakeMidiPort : public MidiInApi {
public:
    FakeMidiPort(RtMidi::Api api, unsigned limit) : MidiInApi(limit), m_api(api) {
        if (!fake().interfaces[api].opens) {
            error(RtMidiError::DRIVER_ERROR, "FakeMidiPort: this interface can't be opened");
        }
        ++fake().alive;
    }
    ~FakeMidiPort() override {
        closePort();
        while (fake().hang) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        --fake().alive;
    }

    RtMidi::Api getCurrentApi() override { return m_api; }
    void openPort(unsigned number, const std::string&) override {
        if (!fake().portsOpen || number >= getPortCount()) {
            error(RtMidiError::DRIVER_ERROR, "FakeMidiPort: this port can't be opened");
            connected_ = true; // one of the library's interfaces does so in spite of the error
            return;
        }
        const std::scoped_lock locked(fake().lock);
        fake().opened.emplace_back(m_api, number);
        fake().open = this;
        connected_ = true;
    }
    void closePort() override {
        const std::scoped_lock locked(fake().lock);
        if (fake().open == this) {
            fake().open = nullptr;
        }
        connected_ = false;
    }
    unsigned getPortCount() override { return static_cast<unsigned>(fake().interfaces[m_api].ports.size()); }
    std::string getPortName(unsigned number) override { return fake().interfaces[m_api].ports.at(number); }
    void openVirtualPort(const std::string&) override {}
    void setClientName(const std::string&) override {}
    void setPortName(const std::string&) override {}

    void deliver(std::vector<unsigned char>& bytes) {
        if (inputData_.usingCallback) {
            inputData_.userCallback(0.0, &bytes, inputData_.userData);
        }
    }
    int ignored() const { return inputData_.ignoreFlags; }

protected:
    void initialize(const std::string&) override {}

private:
    static FakeMidi& fake() { return FakeMidi::instance(); }
    RtMidi::Api m_api;
};

inline bool FakeMidi::send(std::vector<unsigned char> bytes) {
    const std::scoped_lock locked(lock);
    if (open == nullptr) {
        return false;
    }
    open->deliver(bytes);
    return true;
}

inline int FakeMidi::ignored() {
    const std::scoped_lock locked(lock);
    return open == nullptr ? -1 : open->ignored();
}

RtMidiIn::RtMidiIn(RtMidi::Api api, const std::string& clientName, unsigned queueSizeLimit) {
    FakeMidi::instance().made.emplace_back(api, clientName);
    FakeMidi::instance().queueLimits.push_back(queueSizeLimit);
    rtapi_ = new FakeMidiPort(api, queueSizeLimit);
}
