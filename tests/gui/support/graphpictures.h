#pragma once
// The pictures of the graph that are stored: what each shows and how it is made.

#include "gui/support/deckgraph.h"
#include "gui/support/graphhand.h"
#include "gui/support/textink.h"
#include "module/wavedata.h"
#include "phrasing/managephrasing.h"
#include "phrasing/wavphrasing.h"
#include "support/phrasingareas.h"

#include "model/modelshini.h"

#include <functional>
#include <memory>
#include <vector>

namespace GraphPictures {

using Text = PlacedText;

enum class Areas { None, Gaps, Touching, Wave };
enum class Fader { Shown, Hidden, Inverted };

/// What a picture is made of.
struct Look {
    ModelDisplay::EnumDisplay display = ModelDisplay::NORMAL;
    Areas areas = Areas::None;
    Fader fader = Fader::Shown;
    ModelShini::EnumShini shini = ModelShini::Undefined;
    ModelGraph::EnumGraph deck = ModelGraph::INPUT_DECKA;
    QSize size{420, 180};
    bool reverse = false;
    bool looper = false;
    bool directSound = false;
    bool grid = false;
    bool disc = false;
    bool rotate = false;
    double firstMetronome = 0.0;
    double cursor = 1e7; ///< far right of the plot: the needles are at the curves' ends
    std::function<void(DeckGraph&)> curves{};
    std::function<std::vector<Text>(const DeckGraph&)> texts{}; ///< to be found outside the comparison
    std::function<std::vector<QRectF>(const DeckGraph&)> masks{};
};

struct Row {
    QString name;
    QString shows;
    double ratio = 1.0;
    Look look;
};

struct Drawn {
    QImage image;
    std::vector<QRectF> masks;
    std::vector<Text> texts;
};

inline const QColor red(208, 0, 24);
inline const QColor teal(1, 194, 193);

inline QPhrasingList areasOf(Areas areas) {
    switch (areas) {
    case Areas::Gaps:
    case Areas::Wave:
        return {area(40.0, 150.0, red, QStringLiteral("one")),
                area(170.0, 320.0, teal, QStringLiteral("two"))};
    case Areas::Touching:
        return {area(40.0, 100.0, red), area(100.0, 150.0, red), area(150.0, 250.0, teal)};
    default:
        return {};
    }
}

/// Eight sounds a turn that die away.
inline std::shared_ptr<const WaveData> eightSounds() {
    constexpr int samples = 72000;
    auto wave = std::make_shared<WaveData>(48000, 1, samples);
    for (int i = 0; i < samples; ++i) {
        const int loud = 1000 - i % 9000 / 9;
        wave->samples(0)[std::size_t(i)] = std::int16_t(i % 2 == 0 ? loud : -loud);
    }
    wave->setPeaks(-1000, 1000);
    return wave;
}

/// The hand of the curve pictures, and as the reference the same a third of a second later and lower.
inline void twoHands(DeckGraph& deck) {
    GraphHand::play(deck.main, 146000.0);
    GraphHand::play(deck.secondary, 165000.0, 16000.0, 275.0);
}

/// One point for each needle, degrees; a graph shows no line for it.
inline std::function<void(DeckGraph&)> needles(double main, double reference, bool soundOn = true) {
    return [=](DeckGraph& deck) {
        const auto point = [](double angle, bool on) {
            return [=](int, CurvePoint& p) {
                turn(p, angle);
                p.soundOn = on ? 1 : 0;
            };
        };
        addPoints(deck.main, 1, GraphHand::step, point(main, soundOn));
        addPoints(deck.secondary, 1, GraphHand::step, point(reference, true));
    };
}

inline Drawn draw(const Look& look, double ratio) {
    resetSharedState();
    mode().setDisplayMode(look.display);
    look.reverse ? mode().modeReverse_on() : mode().modeReverse_off();
    training().setActivatedMode(look.looper ? ModelActivatedMode::Looper : ModelActivatedMode::Training);
    training().setFirstMetronome(look.firstMetronome);
    setting().setGraphLogo(false);
    setting().setGraphGrid(look.grid);
    setting().setGraphVinylPosition(look.disc);
    setting().setGraphVinylColorRotation(look.rotate);
    setting().setGraphDirectSound(look.directSound);
    setting().setGraphShiniMode(look.shini);
    setting().setGraphCurveCrossFaderOff(look.fader != Fader::Hidden);
    setting().setGraphCurveCrossFaderOffInvertColor(look.fader == Fader::Inverted);
    setting().setGraphCurveNoSound(look.areas == Areas::Touching);
    const auto wave = Singleton::instance().wavPhrasing();
    wave->setWav(look.deck, look.areas == Areas::Wave ? eightSounds() : nullptr);

    DeckGraph deck(look.deck, look.size);
    deck.graph.colorAreas()->setListPhrasing(areasOf(look.areas));
    deck.graph.generateWavPhrasing();
    look.curves(deck);
    deck.graph.setXRange({10000, 160000});
    deck.setCursor(look.cursor);
    Drawn drawn{pictureOf(deck.graph, ratio), {}, {}};
    if (look.masks) {
        drawn.masks = look.masks(deck);
    }
    if (look.texts) {
        drawn.texts = look.texts(deck);
    }
    wave->setWav(look.deck, nullptr);
    mode().modeReverse_off();
    training().setFirstMetronome(0.0);
    return drawn;
}

inline void add(std::vector<Row>& rows, const QString& name, const QString& shows, const Look& look) {
    for (const int percent : {100, 125}) {
        rows.push_back({name + QLatin1Char('_') + QString::number(percent),
                        shows + (percent == 100 ? QString() : QStringLiteral(" (at 125 %)")), percent / 100.0,
                        look});
    }
}

} // namespace GraphPictures
