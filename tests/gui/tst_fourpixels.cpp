#include "painter/fourpixels.h"
#include "painter/pixelblend.h"
#include "support/testmain.h"

#include <QTest>

#include <array>
#include <cmath>
#include <random>

class TestFourPixels : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Of every part, and of four different ones at a time.
    void fourPixelsAreMixedAsOneIs() {
        std::mt19937 random(7);
        for (int round = 0; round < 200; ++round) {
            const std::uint32_t color = 0xff000000U | std::uint32_t(random());
            const FourPixels::Color four(color);
            for (int part = 0; part <= 255; ++part) {
                const FourPixels::Parts parts{part, 255 - part, int(random() % 256), (part * 7) % 256};
                std::array<std::uint32_t, 4> pixels;
                std::array<std::uint32_t, 4> wanted;
                for (std::size_t i = 0; i < pixels.size(); ++i) {
                    pixels[i] = std::uint32_t(random());
                    wanted[i] = PixelBlend::mixed(color, std::uint32_t(parts[int(i)]), pixels[i]);
                }
                four.mix(pixels.data(), pixels.data() + 2, parts);
                QVERIFY(pixels == wanted);
            }
        }
    }
    void twoPixelsMayLieApart() {
        std::array<std::uint32_t, 7> pixels{1, 2, 3, 4, 5, 6, 7};
        FourPixels::Color(0xff123456U)
            .mix(pixels.data() + 1, pixels.data() + 4, FourPixels::Parts{255, 0, 0, 255});
        QVERIFY((pixels == std::array<std::uint32_t, 7>{1, 0xff123456U, 3, 4, 5, 0xff123456U, 7}));
    }
    void valuesAreWorkedOnEachForItself() {
        const FourPixels::Floats a{-1.0F, 2.5F, 9.0F, 0.0F};
        const FourPixels::Floats b{0.0F, 2.0F, 16.0F, 0.25F};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(FourPixels::least(a, b)[i], std::min(a[i], b[i]));
            QCOMPARE(FourPixels::greatest(a, b)[i], std::max(a[i], b[i]));
            QCOMPARE(FourPixels::squareRoot(b)[i], std::sqrt(b[i]));
            QCOMPARE(FourPixels::rounded(b)[i], int(std::lround(b[i])));
            QCOMPARE(FourPixels::floats(3.5F)[i], 3.5F);
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(TestFourPixels)
#include "tst_fourpixels.moc"
