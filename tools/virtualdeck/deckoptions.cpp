#include "deckoptions.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

QString timecodeNames() {
    QStringList names;
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        names << QString::fromStdString(def.name());
    }
    return names.join(u", "_s);
}

QString patternNames() {
    QStringList names;
    for (const std::string& name : Motion::patternNames()) {
        names << QString::fromStdString(name);
    }
    return names.join(u", "_s);
}

// --fader's choices beside "pattern" and "none".
constexpr std::array cutPatterns{"chirp", "transform", "flare", "walk"};

QString faderNames() {
    QStringList names{u"pattern"_s, u"none"_s};
    for (const char* name : cutPatterns) {
        names << QString::fromLatin1(name);
    }
    return names.join(u", "_s);
}

} // namespace

SyntheticRecord DeckOptions::record(int deck, double sampleRate) const {
    RecordOptions options;
    options.level = level;
    options.noisePercent = noisePercent;
    options.dcOffset = dcOffset;
    options.seed = std::uint64_t{seed} + static_cast<std::uint64_t>(deck);
    const auto motion = [&](MotionPattern pattern) {
        return Motion(pattern, bpm, Motion::defaultStart, options.seed);
    };
    const Motion hands = motion(patterns[static_cast<std::size_t>(deck)]);
    return {timecode, sampleRate, fader ? Motion::withFader(hands, motion(*fader)) : hands, options};
}

DeckOptionsParser::DeckOptionsParser() {
    m_parser.setApplicationDescription(
        u"Two decks with timecode records and a crossfader, played by nobody.\n"
        "Without --wav it is the JACK client \"Virtual Deck\" with the audio ports deckA_left, deckA_right, "
        "deckB_left and deckB_right and the MIDI port crossfader. There the crossfader is sent as controller "
        "8 "
        "on the first channel (0/8 in the settings), at each frame where it changes: 63 is the middle, both "
        "decks are heard; 127 is the right end, deck A is cut; a cut takes some 10 ms. --fader says who "
        "moves "
        "it. The first value is sent at the start, to those that are connected by then."_s);
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    m_parser.addOptions({
        {u"timecode"_s, u"The record on both decks: %1. Default generic_V2."_s.arg(timecodeNames()),
         u"NAME"_s, u"generic_V2"_s},
        {u"pattern"_s,
         u"What the hands do, for both decks or as A,B: %1. Default play."_s.arg(patternNames()), u"NAME"_s,
         u"play"_s},
        {u"fader"_s,
         u"Who moves the crossfader, in time with the patterns: %1. \"pattern\" is the pattern of deck A, "
         "\"none\" leaves it in the middle, the others are the cuts of that pattern whatever the hands do. "
         "Default pattern."_s.arg(faderNames()),
         u"NAME"_s, u"pattern"_s},
        {u"bpm"_s, u"Tempo of the patterns, 20 to 400. Default 84."_s, u"N"_s, u"84"_s},
        {u"level"_s,
         u"Peak of the carrier at nominal speed, 0.01 to 4: 1 is full scale, and what goes beyond is "
         u"clipped. "
         "It follows the speed as a cartridge's does. Default 0.5."_s,
         u"N"_s, u"0.5"_s},
        {u"noise"_s, u"White noise within this percentage of full scale, 0 to 100. Default 0."_s,
         u"PERCENT"_s, u"0"_s},
        {u"dc"_s, u"Offset of both channels on the 16-bit scale, -32768 to 32767. Default 0."_s, u"VALUE"_s,
         u"0"_s},
        {u"seed"_s, u"Start value of everything random; deck B takes the next one. Default 1."_s, u"N"_s,
         u"1"_s},
        {u"server"_s, u"Name of the JACK server. Default from the environment."_s, u"NAME"_s},
        {u"seconds"_s, u"Stop after this time. Default: endless; with --wav 10."_s, u"N"_s},
        {u"wav"_s, u"Write the signal to this file instead of playing it."_s, u"FILE"_s},
        {u"deck"_s, u"The deck to write, A or B; only with --wav. Default A."_s, u"A|B"_s, u"A"_s},
        {u"rate"_s, u"Frames a second, 8000 to 192000; only with --wav. Default 48000."_s, u"HZ"_s,
         u"48000"_s},
    });
}

bool DeckOptionsParser::fail(const QString& message) {
    m_error = message;
    return false;
}

bool DeckOptionsParser::number(const QString& option, double low, double high, double& value) {
    const QString text = m_parser.value(option);
    bool ok = false;
    value = text.toDouble(&ok);
    // Written this way round, the test also stops a "nan".
    if (!ok || !(value >= low && value <= high)) {
        return fail(
            u"--%1 takes a number from %2 to %3, not \"%4\"."_s.arg(option).arg(low).arg(high).arg(text));
    }
    return true;
}

bool DeckOptionsParser::whole(const QString& option, std::uint32_t low, std::uint32_t high,
                              std::uint32_t& value) {
    const QString text = m_parser.value(option);
    bool ok = false;
    value = text.toUInt(&ok);
    if (!ok || value < low || value > high) {
        return fail(
            u"--%1 takes a whole number from %2 to %3, not \"%4\"."_s.arg(option).arg(low).arg(high).arg(
                text));
    }
    return true;
}

std::optional<DeckOptions> DeckOptionsParser::parse(const QStringList& arguments) {
    if (!m_parser.parse(arguments)) {
        fail(m_parser.errorText());
        return std::nullopt;
    }
    if (m_parser.isSet(u"help"_s) || m_parser.isSet(u"help-all"_s)) {
        m_parser.showHelp();
    }
    if (m_parser.isSet(u"version"_s)) {
        m_parser.showVersion();
    }
    if (!m_parser.positionalArguments().isEmpty()) {
        fail(u"\"%1\" is no option."_s.arg(m_parser.positionalArguments().constFirst()));
        return std::nullopt;
    }
    DeckOptions options;
    if (!readSignal(options) || !readTarget(options)) {
        return std::nullopt;
    }
    return options;
}

bool DeckOptionsParser::readSignal(DeckOptions& options) {
    const std::string timecode = m_parser.value(u"timecode"_s).toStdString();
    for (const TimecodeDefinition& def : createTimecodeDefinitions()) {
        if (def.name() == timecode) {
            options.timecode = def;
        }
    }
    if (options.timecode.name().empty()) {
        return fail(
            u"No timecode \"%1\"; there are %2."_s.arg(m_parser.value(u"timecode"_s), timecodeNames()));
    }
    if (!readHands(options)) {
        return false;
    }
    return number(u"bpm"_s, 20.0, 400.0, options.bpm) && number(u"level"_s, 0.01, 4.0, options.level) &&
           number(u"noise"_s, 0.0, 100.0, options.noisePercent) &&
           number(u"dc"_s, -32768.0, 32767.0, options.dcOffset) &&
           whole(u"seed"_s, 0, std::numeric_limits<std::uint32_t>::max(), options.seed);
}

bool DeckOptionsParser::readHands(DeckOptions& options) {
    QStringList names = m_parser.value(u"pattern"_s).split(u',');
    if (names.size() == 1) {
        names << names.constFirst();
    }
    if (names.size() != 2) {
        return fail(u"--pattern takes one name or two, not \"%1\"."_s.arg(m_parser.value(u"pattern"_s)));
    }
    for (int deck = 0; deck < 2; ++deck) {
        const std::optional<MotionPattern> pattern = Motion::patternFromName(names.at(deck).toStdString());
        if (!pattern) {
            return fail(u"No pattern \"%1\"; there are %2."_s.arg(names.at(deck), patternNames()));
        }
        options.patterns[static_cast<std::size_t>(deck)] = *pattern;
    }
    const QString fader = m_parser.value(u"fader"_s);
    if (fader == u"none"_s) {
        options.fader = MotionPattern::Play; // which leaves it in the middle
    } else if (fader != u"pattern"_s) {
        const bool cuts = std::count(cutPatterns.begin(), cutPatterns.end(), fader.toStdString()) != 0;
        if (!cuts) {
            return fail(u"--fader is one of %1, not \"%2\"."_s.arg(faderNames(), fader));
        }
        options.fader = Motion::patternFromName(fader.toStdString());
    }
    return true;
}

bool DeckOptionsParser::readTarget(DeckOptions& options) {
    if (m_parser.isSet(u"seconds"_s)) {
        double seconds = 0.0;
        if (!number(u"seconds"_s, 0.001, 1000000.0, seconds)) {
            return false;
        }
        options.seconds = seconds;
    }
    if (!m_parser.isSet(u"wav"_s)) {
        for (const QString& option : {u"deck"_s, u"rate"_s}) {
            if (m_parser.isSet(option)) {
                return fail(u"--%1 goes with --wav only."_s.arg(option));
            }
        }
        if (m_parser.isSet(u"server"_s)) {
            options.server = m_parser.value(u"server"_s);
        }
        return true;
    }
    if (m_parser.isSet(u"server"_s)) {
        return fail(u"--server and --wav exclude each other."_s);
    }
    options.wavFile = m_parser.value(u"wav"_s);
    if (options.wavFile->isEmpty()) {
        return fail(u"--wav takes the name of a file."_s);
    }
    const QString deck = m_parser.value(u"deck"_s);
    if (deck != u"A"_s && deck != u"B"_s) {
        return fail(u"--deck is A or B, not \"%1\"."_s.arg(deck));
    }
    options.wavDeck = deck == u"A"_s ? 0 : 1;
    options.seconds = options.seconds.value_or(10.0);
    return whole(u"rate"_s, 8000, 192000, options.wavRate);
}
