#pragma once
// The command line of the virtual deck.

#include "syntheticrecord.h"

#include <QCommandLineParser>
#include <QString>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

/// What the user asked for; all values are in range.
struct DeckOptions {
    TimecodeDefinition timecode;
    std::array<MotionPattern, 2> patterns{MotionPattern::Play, MotionPattern::Play}; ///< of decks A and B
    std::optional<MotionPattern>
        fader; ///< whose cuts the crossfader makes; nothing: those of deck A's pattern
    double bpm = Motion::defaultBpm;
    double level = 0.5; ///< peak at nominal speed, 1.0 is full scale
    double noisePercent = 0.0;
    double dcOffset = 0.0; ///< on the 16-bit scale
    std::uint32_t seed = 1;
    std::optional<QString> server;
    std::optional<double> seconds;
    std::uint32_t wavRate = 48000;
    std::optional<QString> wavFile;
    int wavDeck = 0;

    /// The record on deck 0 (A) or 1 (B). Live and file signals both come from here.
    SyntheticRecord record(int deck, double sampleRate) const;
};

/// Reads the arguments. Prints and leaves the process for --help and --version.
class DeckOptionsParser {
public:
    DeckOptionsParser();
    /// Nothing if an argument is wrong; error() then says which.
    std::optional<DeckOptions> parse(const QStringList& arguments);
    const QString& error() const { return m_error; }

private:
    bool readSignal(DeckOptions& options);
    bool readHands(DeckOptions& options);
    bool readTarget(DeckOptions& options);
    bool number(const QString& option, double low, double high, double& value);
    bool whole(const QString& option, std::uint32_t low, std::uint32_t high, std::uint32_t& value);
    bool fail(const QString& message);

    QCommandLineParser m_parser;
    QString m_error;
};
