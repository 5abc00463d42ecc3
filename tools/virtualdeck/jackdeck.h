#pragma once
// The virtual deck as a JACK client: two records and a crossfader.

#include "syntheticrecord.h"

#include <jack/jack.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

/// Open, then start once; the destructor leaves the server. All methods belong to one thread; the records are
/// rendered directly in JACK's process callback.
class JackDeck {
public:
    JackDeck() = default;
    ~JackDeck();
    JackDeck(const JackDeck&) = delete;
    JackDeck& operator=(const JackDeck&) = delete;

    /// Joins the running server of this name (none: JACK's own choice) and makes the ports. On false, error()
    /// tells why.
    bool open(const std::optional<std::string>& server);
    double sampleRate() const;
    /// The name that the server gave; differs from "Virtual Deck" if that was taken.
    std::string name() const;
    /// Starts both records at their frame 0. After `limit` frames there is silence and finished() is true;
    /// 0 means no end. The crossfader follows the record of deck A.
    bool start(const SyntheticRecord& deckA, const SyntheticRecord& deckB, std::uint64_t limit);

    bool finished() const { return m_limit != 0 && frames() >= m_limit; }
    /// The server has left or thrown the client out.
    bool lost() const { return m_lost.load(std::memory_order_relaxed); }
    /// Frames played so far on each deck.
    std::uint64_t frames() const { return m_frames.load(std::memory_order_relaxed); }
    /// Cycles that came too late for the server, whoever's fault it was.
    std::uint64_t xruns() const { return m_xruns.load(std::memory_order_relaxed); }
    const std::string& error() const { return m_error; }

private:
    bool makePorts();
    void process(jack_nframes_t count);
    void sendCrossfader(std::uint64_t first, jack_nframes_t live, jack_nframes_t count);

    jack_client_t* m_client = nullptr;
    std::array<jack_port_t*, 4> m_audio{}; // left and right of A, left and right of B
    jack_port_t* m_midi = nullptr;
    std::string m_error;

    // Prepared by start(), then the process callback's own.
    std::optional<SyntheticRecord> m_deckA;
    std::optional<SyntheticRecord> m_deckB;
    std::uint64_t m_limit = 0;
    int m_sentFader = -1;

    std::atomic<std::uint64_t> m_frames{0};
    std::atomic<std::uint64_t> m_xruns{0};
    std::atomic<bool> m_lost{false};
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
};
