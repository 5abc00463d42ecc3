#include "drawoptions.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int thickest = 100; // curve, pixels
constexpr double lowestRate = 8000.0;
constexpr double highestRate = 768000.0;

QString plain(double value) {
    return QString::number(value, 'g', 10);
}

} // namespace

QStringList DrawOptions::inputs() const {
    QStringList files{take};
    for (const QString& file : {reference, phrasing, wave}) {
        if (!file.isEmpty()) {
            files << file;
        }
    }
    return files;
}

DrawOptionsParser::DrawOptionsParser() {
    m_parser.setApplicationDescription(
        u"Draws a take with the graph of Gramo Scope into a PNG file. It needs no screen and no sound, and "
        "leaves the settings and the data of Gramo Scope alone: what isn't asked for here looks as it does "
        "after a first start."_s);
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    m_parser.addOptions({
        {u"reference"_s, u"A curve file that is drawn below the take, as in a training."_s, u"REF.grw"_s},
        {u"phrasing"_s, u"The areas of the record; they colour the curves."_s, u"FILE.grp"_s},
        {u"wave"_s, u"The sample of the areas: a 16-bit PCM file; its wave is drawn as well."_s,
         u"FILE.wav"_s},
        {u"deck"_s, u"a or b: the deck that the take is drawn as (a)."_s, u"DECK"_s},
        {u"mode"_s, u"normal, phrasing or drumming: what is drawn over time (normal)."_s, u"MODE"_s},
        {u"shini"_s, u"arrows, circles or middle: icons at the cuts of the crossfader (none)."_s, u"ICONS"_s},
        {u"fader"_s, u"shown, hidden or inverted: the curve where the crossfader is closed (shown)."_s,
         u"HOW"_s},
        {u"width"_s, u"Pixels of the curve where it sounds, 1 to 100 (8)."_s, u"N"_s},
        {u"disc"_s,
         u"on or off: the picture of the record in the corner, as it stands at the cursor (off)."_s,
         u"SWITCH"_s},
        {u"direct"_s, u"on or off: what is heard stands above the plot; only with --wave (on)."_s,
         u"SWITCH"_s},
        {u"grid"_s, u"on or off: grid and labels (on)."_s, u"SWITCH"_s},
        {u"logo"_s, u"on or off: the logo behind the curves (on)."_s, u"SWITCH"_s},
        {u"bpm"_s, u"Tempo of the grid, 1 to 1000 (the take's own; 84 if it has none)."_s, u"N"_s},
        {u"rate"_s,
         u"Sample rate of the deck in Hz, 8000 to 768000 (what the name of a recorded take says, else "
         "48000)."_s,
         u"HZ"_s},
        {u"from"_s, u"Beat at the left edge, counted as the grid counts; only with --beats (0)."_s,
         u"BEAT"_s},
        {u"beats"_s, u"Beats from there to the right edge, above 1 and below 36000 (the whole take)."_s,
         u"N"_s},
        {u"cursor"_s, u"Beat at which the red cursor stands (none: it is out of view, behind the take)."_s,
         u"BEAT"_s},
        {u"size"_s, u"Width and height of the graph in pixels, 64 to 16384 each (1900x500)."_s, u"WxH"_s,
         u"1900x500"_s},
        {u"scale"_s, u"Pixels of the picture for each pixel of the graph, 0.5 to 8 (1)."_s, u"F"_s, u"1"_s},
    });
    m_parser.addPositionalArgument(u"IN.grw"_s, u"The curve file of a take."_s);
    m_parser.addPositionalArgument(u"OUT.png"_s, u"The picture to write."_s);
}

DrawOptionsParser::Result DrawOptionsParser::parse(const QStringList& arguments) {
    m_options = {};
    m_error.clear();
    if (!m_parser.parse(arguments)) {
        fail(m_parser.errorText() + u" See --help."_s);
        return Result::Wrong;
    }
    if (m_parser.isSet(u"help"_s) || m_parser.isSet(u"help-all"_s)) {
        return Result::Help;
    }
    if (m_parser.isSet(u"version"_s)) {
        return Result::Version;
    }
    return readLook() && readTime() && readSize() && readFiles() ? Result::Draw : Result::Wrong;
}

bool DrawOptionsParser::fail(const QString& message) {
    m_error = message;
    return false;
}

std::optional<qsizetype> DrawOptionsParser::choice(const QString& option, const QStringList& choices) {
    const qsizetype index = choices.indexOf(m_parser.value(option));
    if (index < 0) {
        fail(u"--%1 is %2 or %3, not \"%4\""_s.arg(option, choices.first(choices.size() - 1).join(u", "_s),
                                                   choices.last(), m_parser.value(option)));
        return std::nullopt;
    }
    return index;
}

template <typename Switch> bool DrawOptionsParser::onOff(const QString& option, Switch& value) {
    if (!m_parser.isSet(option)) {
        return true;
    }
    const auto chosen = choice(option, {u"on"_s, u"off"_s});
    if (chosen) {
        value = *chosen == 0;
    }
    return chosen.has_value();
}

bool DrawOptionsParser::number(const QString& option, double low, double high, double& value) {
    const QString text = m_parser.value(option);
    bool ok = false;
    value = text.toDouble(&ok);
    // Written this way round, the test also stops a "nan".
    if (!ok || !(value >= low && value <= high)) {
        return fail(
            u"--%1 takes a number from %2 to %3, not \"%4\""_s.arg(option, plain(low), plain(high), text));
    }
    return true;
}

bool DrawOptionsParser::number(const QString& option, double low, double high, std::optional<double>& value) {
    if (!m_parser.isSet(option)) {
        return true;
    }
    double given = 0.0;
    if (!number(option, low, high, given)) {
        return false;
    }
    value = given;
    return true;
}

bool DrawOptionsParser::readLook() {
    if (m_parser.isSet(u"deck"_s)) {
        const auto deck = choice(u"deck"_s, {u"a"_s, u"b"_s});
        if (!deck) {
            return false;
        }
        m_options.deck = *deck == 0 ? ModelGraph::INPUT_DECKA : ModelGraph::INPUT_DECKB;
    }
    if (m_parser.isSet(u"mode"_s)) {
        const auto mode = choice(u"mode"_s, {u"normal"_s, u"phrasing"_s, u"drumming"_s});
        if (!mode) {
            return false;
        }
        constexpr ModelDisplay::EnumDisplay displays[] = {ModelDisplay::NORMAL, ModelDisplay::PHRASING,
                                                          ModelDisplay::DRUMMING};
        m_options.display = displays[*mode];
    }
    if (m_parser.isSet(u"shini"_s)) {
        const auto icons = choice(u"shini"_s, {u"arrows"_s, u"circles"_s, u"middle"_s});
        if (!icons) {
            return false;
        }
        constexpr ModelShini::EnumShini modes[] = {ModelShini::Arrows, ModelShini::Circles,
                                                   ModelShini::Middle};
        m_options.shini = modes[*icons];
    }
    if (m_parser.isSet(u"fader"_s)) {
        const auto how = choice(u"fader"_s, {u"shown"_s, u"hidden"_s, u"inverted"_s});
        if (!how) {
            return false;
        }
        constexpr ClosedFader hows[] = {ClosedFader::Shown, ClosedFader::Hidden, ClosedFader::Inverted};
        m_options.fader = hows[*how];
    }
    if (m_parser.isSet(u"width"_s)) {
        bool ok = false;
        const int width = m_parser.value(u"width"_s).toInt(&ok);
        if (!ok || width < 1 || width > thickest) {
            return fail(u"--width takes a whole number from 1 to %1, not \"%2\""_s.arg(thickest).arg(
                m_parser.value(u"width"_s)));
        }
        m_options.width = width;
    }
    return onOff(u"disc"_s, m_options.disc) && onOff(u"direct"_s, m_options.direct) &&
           onOff(u"grid"_s, m_options.grid) && onOff(u"logo"_s, m_options.logo);
}

bool DrawOptionsParser::readTime() {
    constexpr double furthest = DrawOptions::furthestBeat;
    if (m_parser.isSet(u"from"_s)) {
        if (!m_parser.isSet(u"beats"_s)) {
            return fail(u"--from goes with --beats only"_s);
        }
        if (!number(u"from"_s, -furthest, furthest, m_options.from)) {
            return false;
        }
    }
    if (m_parser.isSet(u"beats"_s)) {
        const QString text = m_parser.value(u"beats"_s);
        bool ok = false;
        const double beats = text.toDouble(&ok);
        if (!ok || !(beats > DrawOptions::fewestBeats && beats < DrawOptions::mostBeats)) {
            return fail(u"--beats takes a number above %1 and below %2, not \"%3\""_s.arg(
                plain(DrawOptions::fewestBeats), plain(DrawOptions::mostBeats), text));
        }
        m_options.beats = beats;
    }
    return number(u"bpm"_s, DrawOptions::slowest, DrawOptions::fastest, m_options.bpm) &&
           number(u"rate"_s, lowestRate, highestRate, m_options.rate) &&
           number(u"cursor"_s, -furthest, furthest, m_options.cursor);
}

bool DrawOptionsParser::readSize() {
    static const QRegularExpression sides(
        QRegularExpression::anchoredPattern(u"([0-9]{1,9})x([0-9]{1,9})"_s));
    const QString text = m_parser.value(u"size"_s);
    const QRegularExpressionMatch match = sides.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const auto fits = [](int side) {
        return side >= DrawOptions::smallestSide && side <= DrawOptions::largestSide;
    };
    if (!match.hasMatch() || !fits(size.width()) || !fits(size.height())) {
        return fail(u"--size takes WIDTHxHEIGHT, %1 to %2 each, not \"%3\""_s.arg(DrawOptions::smallestSide)
                        .arg(DrawOptions::largestSide)
                        .arg(text));
    }
    m_options.size = size;
    if (!number(u"scale"_s, DrawOptions::smallestScale, DrawOptions::largestScale, m_options.scale)) {
        return false;
    }
    const QSize image = m_options.imageSize();
    if (std::max(image.width(), image.height()) > DrawOptions::largestImageSide ||
        double(image.width()) * image.height() > DrawOptions::mostImagePixels) {
        return fail(u"--size and --scale ask for %1x%2 pixels; the most are %3 in all and %4 a side"_s
                        .arg(image.width())
                        .arg(image.height())
                        .arg(plain(DrawOptions::mostImagePixels))
                        .arg(DrawOptions::largestImageSide));
    }
    return true;
}

bool DrawOptionsParser::readFiles() {
    const QStringList files = m_parser.positionalArguments();
    if (files.size() != 2 || files.contains(QString())) {
        return fail(u"takes two files, IN.grw and OUT.png; see --help"_s);
    }
    m_options.take = files.at(0);
    m_options.output = files.at(1);
    // Whoever forgets the second name must not lose what bears the last one given.
    if (!m_options.output.endsWith(u".png"_s, Qt::CaseInsensitive)) {
        return fail(u"the picture's name has to end in .png, not as in \"%1\""_s.arg(m_options.output));
    }
    const auto name = [this](const QString& option, QString& file) {
        if (!m_parser.isSet(option)) {
            return true;
        }
        file = m_parser.value(option);
        return !file.isEmpty() || fail(u"--%1 takes the name of a file"_s.arg(option));
    };
    return name(u"reference"_s, m_options.reference) && name(u"phrasing"_s, m_options.phrasing) &&
           name(u"wave"_s, m_options.wave);
}
