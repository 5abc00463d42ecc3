#include "fakertmidi.h"

#include <chrono>
#include <thread>

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

bool FakeMidi::send(std::vector<unsigned char> bytes) {
    const std::scoped_lock locked(lock);
    if (open == nullptr) {
        return false;
    }
    open->deliver(bytes);
    return true;
}

int FakeMidi::ignored() {
    const std::scoped_lock locked(lock);
    return open == nullptr ? -1 : open->ignored();
}

RtMidiIn::RtMidiIn(RtMidi::Api api, const std::string& clientName, unsigned queueSizeLimit) {
    FakeMidi::instance().made.emplace_back(api, clientName);
    FakeMidi::instance().queueLimits.push_back(queueSizeLimit);
    rtapi_ = new FakeMidiPort(api, queueSizeLimit);
}
