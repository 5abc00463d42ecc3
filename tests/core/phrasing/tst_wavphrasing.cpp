#include "module/wavedata.h"
#include "phrasing/wavphrasing.h"
#include "support/testmain.h"

#include <QTest>

namespace {
constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
} // namespace

class tst_WavPhrasing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noDeckHasAWaveAtStart() {
        const WavPhrasing waves;
        QVERIFY(waves.wav(deckA) == nullptr && waves.wav(deckB) == nullptr);
    }

    void theDecksHaveWavesOfTheirOwn() {
        WavPhrasing waves;
        const auto a = std::make_shared<const WaveData>();
        const auto b = std::make_shared<const WaveData>();
        waves.setWav(deckA, a);
        waves.setWav(deckB, b);
        QCOMPARE(waves.wav(deckA), a);
        QCOMPARE(waves.wav(deckB), b);
        waves.setWav(deckA, nullptr);
        QVERIFY(waves.wav(deckA) == nullptr);
        QCOMPARE(waves.wav(deckB), b);
    }

    void anyNameButDeckBMeansDeckA() {
        WavPhrasing waves;
        const auto wave = std::make_shared<const WaveData>();
        waves.setWav(ModelGraph::NOT_USED, wave);
        QCOMPARE(waves.wav(deckA), wave);
        QCOMPARE(waves.wav(ModelGraph::INPUT_2), wave);
        QVERIFY(waves.wav(deckB) == nullptr);
    }

    void aWaveLivesOnWithWhoeverElseHoldsIt() {
        const auto wave = std::make_shared<const WaveData>(44100U, 1U, std::size_t{4});
        {
            WavPhrasing waves;
            waves.setWav(deckA, wave);
            QCOMPARE(wave.use_count(), 2);
        }
        QCOMPARE(wave.use_count(), 1);
        QCOMPARE(wave->length(), std::size_t{4});
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_WavPhrasing)
#include "tst_wavphrasing.moc"
