#pragma once

#include <utility>

/// Where things stand on a graph, in pixels of the widget. The names follow the picture from top to bottom:
/// sound strip and direct wave, the plot, then the captions or the wave bar.
struct GraphLayout {
    static constexpr int waveBarMargin = 120;  ///< below the plot, with the bar
    static constexpr double leftMargin = 45.0; ///< the plot starts here

    int bottomMargin = 0;
    int plotTop = 0;
    double plotWidth = 0.0;
    double stripWidth = 0.0;
    double plotBottom = 0.0;
    double plotHeight = 0.0;
    double directWaveHeight = 0.0;
    double markerBottom = 0.0;
    int waveBarTop = 0;
    int captionBottom = 0;
    int labelBottom = 0;

    /// `waveBar`: the deck has a wave and its bar lies below the plot. `directWave`: the deck has a wave and
    /// what is heard stands above the plot. A narrow widget gives a negative width, a flat one a negative
    /// height: the scale makes nothing of both.
    static GraphLayout of(int width, int height, bool waveBar, bool directWave) {
        const int w = width - 1;
        const int h = height - 1;
        GraphLayout layout;
        layout.bottomMargin = waveBar ? waveBarMargin : 40;
        layout.directWaveHeight = directWave ? 100.0 : 0.0;
        layout.plotTop = directWave ? 135 : 35;
        layout.plotWidth = w - 44;
        layout.stripWidth = w - 89;
        layout.plotBottom = h + 1 - layout.bottomMargin;
        layout.plotHeight = layout.plotBottom - layout.plotTop;
        layout.markerBottom = layout.plotBottom - 3;
        layout.waveBarTop = h - 99;
        layout.captionBottom = h + 1 - layout.bottomMargin + 40;
        layout.labelBottom = h + 1 - layout.bottomMargin + 20;
        return layout;
    }

    static constexpr double lowestPlot = 60.0; ///< below that nothing can be read

    /// The same for a graph that may be too low for all of it: first the direct wave goes, then the bar.
    static GraphLayout fitting(int width, int height, bool waveBar, bool directWave) {
        for (const auto& [bar, direct] :
             {std::pair{waveBar, directWave}, std::pair{waveBar, false}, std::pair{false, false}}) {
            const GraphLayout layout = of(width, height, bar, direct);
            if (layout.plotHeight >= lowestPlot) {
                return layout;
            }
        }
        return of(width, height, waveBar, directWave);
    }
    bool hasWaveBar() const { return bottomMargin == waveBarMargin; }
    bool hasDirectWave() const { return directWaveHeight > 0.0; }
};
