#include "jackdeck.h"

#include <jack/midiport.h>

#include <algorithm>

namespace {

constexpr jack_midi_data_t controlChange = 0xB0; // on the first channel
constexpr jack_midi_data_t crossfaderController = 8;

} // namespace

JackDeck::~JackDeck() {
    // With the server gone, closing would wait for an answer that can't come; the process is about to end.
    if (m_client != nullptr && !lost()) {
        jack_client_close(m_client);
    }
}

bool JackDeck::open(const std::optional<std::string>& server) {
    // JACK's own lines on a missing server are replaced by our one.
    jack_set_error_function([](const char*) {});
    jack_status_t status{};
    m_client = server ? jack_client_open("Virtual Deck",
                                         static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                                         &status, server->c_str())
                      : jack_client_open("Virtual Deck", JackNoStartServer, &status);
    jack_set_error_function(nullptr);
    if (m_client == nullptr) {
        m_error = (status & JackServerFailed) != 0 ? "no JACK server is running" : "JACK refuses the client";
        if (server) {
            m_error += " (server \"" + *server + "\")";
        }
        return false;
    }
    return makePorts();
}

bool JackDeck::makePorts() {
    constexpr std::array<const char*, 4> names{"deckA_left", "deckA_right", "deckB_left", "deckB_right"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        m_audio[i] = jack_port_register(m_client, names[i], JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
    }
    m_midi = jack_port_register(m_client, "crossfader", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    if (m_midi == nullptr || std::count(m_audio.begin(), m_audio.end(), nullptr) != 0) {
        m_error = "JACK has no ports left";
        return false;
    }
    return true;
}

double JackDeck::sampleRate() const {
    return jack_get_sample_rate(m_client);
}

std::string JackDeck::name() const {
    return jack_get_client_name(m_client);
}

bool JackDeck::start(const SyntheticRecord& deckA, const SyntheticRecord& deckB, std::uint64_t limit) {
    m_deckA = deckA;
    m_deckB = deckB;
    m_limit = limit;
    const auto onProcess = [](jack_nframes_t count, void* self) {
        static_cast<JackDeck*>(self)->process(count);
        return 0;
    };
    const auto onXrun = [](void* self) {
        static_cast<JackDeck*>(self)->m_xruns.fetch_add(1, std::memory_order_relaxed);
        return 0;
    };
    const auto onShutdown = [](void* self) {
        static_cast<JackDeck*>(self)->m_lost.store(true, std::memory_order_relaxed);
    };
    jack_on_shutdown(m_client, onShutdown, this);
    if (jack_set_process_callback(m_client, onProcess, this) != 0 ||
        jack_set_xrun_callback(m_client, onXrun, this) != 0 || jack_activate(m_client) != 0) {
        m_error = "JACK doesn't start the client";
        return false;
    }
    return true;
}

void JackDeck::process(jack_nframes_t count) {
    const std::uint64_t first = frames();
    const auto live =
        m_limit == 0 ? count : static_cast<jack_nframes_t>(std::min<std::uint64_t>(count, m_limit - first));
    std::array<float*, 4> out{};
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = static_cast<float*>(jack_port_get_buffer(m_audio[i], count));
        std::fill(out[i] + live, out[i] + count, 0.0F);
    }
    m_deckA->render(first, live, out[0], out[1]);
    m_deckB->render(first, live, out[2], out[3]);
    sendCrossfader(first, live, count);
    m_frames.store(first + live, std::memory_order_relaxed);
}

void JackDeck::sendCrossfader(std::uint64_t first, jack_nframes_t live, jack_nframes_t count) {
    void* buffer = jack_port_get_buffer(m_midi, count);
    jack_midi_clear_buffer(buffer);
    for (jack_nframes_t i = 0; i < live; ++i) {
        const int fader = m_deckA->truth(first + i).crossfader;
        if (fader == m_sentFader) {
            continue;
        }
        const std::array<jack_midi_data_t, 3> message{controlChange, crossfaderController,
                                                      static_cast<jack_midi_data_t>(fader)};
        // With the buffer full the value is due at the next frame that has room.
        if (jack_midi_event_write(buffer, i, message.data(), message.size()) == 0) {
            m_sentFader = fader;
        }
    }
}
