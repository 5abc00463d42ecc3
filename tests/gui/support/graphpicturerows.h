#pragma once
// The rows of the stored pictures.

#include "gui/support/graphpicturewords.h"
#include "gui/support/gridpictures.h"
#include "gui/support/needlepictures.h"

namespace GraphPictures {

/// A value of a combination: its part of the picture's name.
template <typename Value> struct Named {
    Value value;
    QString name;
};

inline const std::vector<Named<ModelDisplay::EnumDisplay>> displays{
    {ModelDisplay::NORMAL, QStringLiteral("normal")},
    {ModelDisplay::PHRASING, QStringLiteral("phrasing")},
    {ModelDisplay::DRUMMING, QStringLiteral("drumming")}};
inline const std::vector<Named<Areas>> areaSets{{Areas::None, QStringLiteral("none")},
                                                {Areas::Gaps, QStringLiteral("gaps")},
                                                {Areas::Touching, QStringLiteral("touching")},
                                                {Areas::Wave, QStringLiteral("wave")}};
inline const std::vector<Named<Fader>> faders{{Fader::Shown, QStringLiteral("shown")},
                                              {Fader::Hidden, QStringLiteral("hidden")},
                                              {Fader::Inverted, QStringLiteral("inverted")}};
inline const std::vector<Named<ModelShini::EnumShini>> shinis{
    {ModelShini::Arrows, QStringLiteral("arrows")},
    {ModelShini::Circles, QStringLiteral("circles")},
    {ModelShini::Middle, QStringLiteral("middle")},
    {ModelShini::Undefined, QStringLiteral("plain")}};

inline QSize sizeFor(const Look& look) {
    if (look.areas != Areas::Wave) {
        return {360, 170};
    }
    return {360, look.display == ModelDisplay::NORMAL ? 350 : 250};
}

inline void addCurves(std::vector<Row>& rows, const QString& name, Look look) {
    look.size = sizeFor(look);
    look.directSound = look.areas == Areas::Wave;
    look.curves = twoHands;
    add(rows, name, curvesInWords(look), look);
}

/// Display, areas, fader and marks in every combination; without marks for one fader alone.
inline void addCombinations(std::vector<Row>& rows) {
    for (const auto& display : displays) {
        for (const auto& areas : areaSets) {
            for (const auto& fader : faders) {
                for (const auto& shini : shinis) {
                    if (shini.value == ModelShini::Undefined && fader.value != Fader::Shown) {
                        continue;
                    }
                    addCurves(rows, QStringList{display.name, areas.name, fader.name, shini.name}.join(u'_'),
                              {.display = display.value,
                               .areas = areas.value,
                               .fader = fader.value,
                               .shini = shini.value});
                }
            }
        }
    }
}

inline void addModes(std::vector<Row>& rows) {
    for (const auto& display : displays) {
        addCurves(rows, QStringLiteral("looper_") + display.name,
                  {.display = display.value, .shini = ModelShini::Circles, .looper = true});
        addCurves(rows, QStringLiteral("deckb_") + display.name,
                  {.display = display.value, .deck = ModelGraph::INPUT_DECKB});
    }
    for (const auto& shini : {shinis[0], shinis[1]}) {
        addCurves(rows, QStringLiteral("reversed_") + shini.name, {.shini = shini.value, .reverse = true});
    }
}

/// All rows, each at 100 % and at 125 %.
inline std::vector<Row> rows() {
    std::vector<Row> all;
    addCombinations(all);
    addModes(all);
    addGrids(all);
    addDiscs(all);
    addWaves(all);
    return all;
}

} // namespace GraphPictures
