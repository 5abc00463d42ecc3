// gramoscope-draw as a program: what its pictures show.
#include "tools/drawrun.h"

#include "support/testmain.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QColor ground(43, 43, 43);
const QColor grey(175, 176, 177);
const QColor green(0, 255, 0);
const QColor cyan(0, 255, 255);
const QColor darkGreen(0, 105, 0);
const QColor darkCyan(0, 105, 105);
const QColor red(255, 0, 0);
const QColor areaRed(200, 0, 0);
const QColor areaBlue(0, 0, 200);

const QStringList bare{u"--grid"_s, u"off"_s, u"--logo"_s, u"off"_s};
const QStringList noLogo{u"--logo"_s, u"off"_s};

// The graph of 1900 x 500: the plot runs from x 45 over 1855 pixels and from y 35 to 460, a level curve
// from -30 to 70.
constexpr int levelRow = 330; // of the curve, but not of the grid's line at 0
int column(double beat, double from, double beats) {
    return int(45.0 + (beat - from) * 1855.0 / beats);
}
// A take of 8 beats and the beat behind it.
int column(double beat) {
    return column(beat, 0.0, 9.0);
}

// Closed from beat 3 to beat 5.
Points cutTake() {
    return takeOf(8.0, [](double beat, TakePoint& point) { point.soundOn = beat < 3.0 || beat >= 5.0; });
}
// Two turns in 8 beats, the hand forward.
Points turningTake() {
    return takeOf(8.0, [](double beat, TakePoint& point) { point.angle = beat * 90.0; });
}
// Whether the whole take's picture has the colour at a beat.
bool colored(const QImage& picture, double beat, int row, QColor color) {
    return near(picture.pixelColor(column(beat), row), color);
}
// Pixels around a place of the level curve in which two pictures differ.
int iconAt(const QImage& plain, const QImage& marked, double beat) {
    int count = 0;
    for (int y = levelRow - 10; y < levelRow + 14; ++y) {
        for (int x = column(beat) - 12; x <= column(beat) + 12; ++x) {
            count += plain.pixel(x, y) != marked.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class tst_Draw : public QObject {
    Q_OBJECT

    DrawRun m_run;

    Drawn draw(const Points& points, const QStringList& more = {}) const {
        Drawn drawn = m_run.draw(points, more);
        if (drawn.exitCode != 0 || !drawn.complaint.isEmpty()) {
            qWarning("%d: %s", drawn.exitCode, qPrintable(drawn.complaint));
            drawn.picture = {};
        }
        return drawn;
    }

private Q_SLOTS:
    void init() {
        m_run = DrawRun();
        QVERIFY(m_run.put(u"areas.grp"_s, areasFile()));
        QVERIFY(m_run.put(u"sample.wav"_s, waveFile()));
    }
    void cleanup() { QCOMPARE(m_run.leftBehind(), QStringList()); }

    void theWholeTakeIsShownAndTheFactsAreTold() {
        const Drawn drawn = draw(levelTake());
        QCOMPARE(drawn.said, u"points 801\ntempo 120 of the take\nbeats 0.00 to 9.00\npixels 1900x500\n"_s);
        const QImage& picture = drawn.picture;
        QCOMPARE(picture.size(), QSize(1900, 500));
        QVERIFY(!picture.hasAlphaChannel());
        for (const double beat : {0.5, 2.5, 4.5, 7.5, 7.95}) {
            QVERIFY(colored(picture, beat, levelRow, green));
            QVERIFY(colored(picture, beat, 20, QColor(26, 126, 26)));
        }
        QVERIFY(colored(picture, 8.5, levelRow, ground));
        QVERIFY(colored(picture, 8.5, 20, ground));
        QCOMPARE(countOf(picture, red), 0); // no cursor
        // Grid, heavy on the bars, and labels at the beats.
        for (int beat = 1; beat <= 8; ++beat) {
            const QRect line(column(beat) - 3, 100, 7, 1);
            QCOMPARE(countOf(picture, line, grey), beat % 4 == 0 ? 4 : 0);
            QVERIFY(countOf(picture, line, ground) < line.width());
            const QRect label(column(beat) - 10, 463, 20, 16);
            QVERIFY(countOf(picture, label, ground) < label.width() * label.height());
        }
        const QRect between(column(4.5) - 10, 463, 20, 16);
        QCOMPARE(countOf(picture, between, ground), between.width() * between.height());
    }

    void gridAndLogoCanBeLeftOut() {
        const QImage both = draw(levelTake()).picture;
        const QImage plain = draw(levelTake(), bare).picture;
        const QRect label(column(4) - 10, 463, 20, 16);
        QCOMPARE(countOf(plain, label, ground), label.width() * label.height());
        QCOMPARE(countOf(plain, grey), 0);
        // The logo stands at the lower left, behind the grid.
        const QRect logo(65, 60, 400, 250);
        QCOMPARE(countOf(plain, logo, ground), logo.width() * logo.height());
        const QImage logoOnly = draw(levelTake(), {u"--grid"_s, u"off"_s}).picture;
        QVERIFY(countOf(logoOnly, logo, ground) < logo.width() * logo.height() * 9 / 10);
        QVERIFY(both != logoOnly);
    }

    void eachDeckHasItsColours() {
        const Points rising = takeOf(8.0, [](double beat, TakePoint& p) { p.position = beat * 30.0; });
        QVERIFY(m_run.put(u"ref.grw"_s, rising));
        const QStringList with = bare + QStringList{u"--reference"_s, u"ref.grw"_s};
        const QImage a = draw(levelTake(), with).picture;
        QVERIFY(countOf(a, green) > 5000);
        QVERIFY(countOf(a, darkGreen) > 5000);
        QCOMPARE(countOf(a, cyan) + countOf(a, darkCyan), 0);
        const QImage b = draw(levelTake(), with + QStringList{u"--deck"_s, u"b"_s}).picture;
        QVERIFY(countOf(b, cyan) > 5000);
        QVERIFY(countOf(b, darkCyan) > 5000);
        QCOMPARE(countOf(b, green) + countOf(b, darkGreen), 0);
        QCOMPARE(countOf(draw(levelTake(), bare).picture, darkGreen), 0);
    }

    void aReferenceThatLastsLongerWidensThePicture() {
        QVERIFY(m_run.put(u"ref.grw"_s, levelTake(12.0)));
        QVERIFY(draw(levelTake(), {u"--reference"_s, u"ref.grw"_s}).says(u"beats 0.00 to 13.00\n"_s));
    }

    void aReferenceThatStartsAboveTheTakeIsReported() {
        const Points high = takeOf(8.0, [](double, TakePoint& p) { p.position = 50.0; });
        QVERIFY(m_run.put(u"ref.grw"_s, high));
        const QStringList with = bare + QStringList{u"--reference"_s, u"ref.grw"_s};
        const Drawn normal = draw(levelTake(), with);
        QVERIFY(normal.says(u"reference out of view"_s));
        QCOMPARE(countOf(normal.picture, darkGreen), 0);
        QVERIFY(!draw(levelTake(), with + QStringList{u"--mode"_s, u"drumming"_s})
                     .says(u"reference out of view"_s));
    }

    void areasColourTheCurves() {
        QVERIFY(m_run.put(u"ref.grw"_s, takeOf(8.0, [](double beat, TakePoint& p) {
                              p.position = beat * 30.0;
                              p.angle = beat * 90.0;
                          })));
        const QImage picture = draw(turningTake(), bare + QStringList{u"--phrasing"_s, u"areas.grp"_s,
                                                                      u"--reference"_s, u"ref.grw"_s})
                                   .picture;
        // The take lies at 0; the reference moves the range.
        for (const QColor color : {areaRed, areaBlue, grey, QColor(250, 50, 50), QColor(50, 50, 250)}) {
            QVERIFY2(countOf(picture, color) > 1000, qPrintable(color.name()));
        }
        QCOMPARE(countOf(picture, green), 0);
        const QImage alone = draw(turningTake(), bare + QStringList{u"--phrasing"_s, u"areas.grp"_s}).picture;
        QVERIFY(colored(alone, 0.5, levelRow, areaRed));
        QVERIFY(colored(alone, 1.5, levelRow, areaBlue));
        QVERIFY(colored(alone, 2.5, levelRow, grey));
        QVERIFY(colored(alone, 4.5, levelRow, areaRed));
    }

    void theModesPlotTheAngle() {
        const Points quarter = takeOf(8.0, [](double, TakePoint& p) { p.angle = 135.0; });
        // 135 of 360 degrees, and the middle of the second area.
        const QImage drumming = draw(quarter, bare + QStringList{u"--mode"_s, u"drumming"_s}).picture;
        QVERIFY(colored(drumming, 4.0, int(460.0 - 135.0 * 2777.0 / 1e6 * 425.0), green));
        const QImage phrasing =
            draw(quarter, bare + QStringList{u"--mode"_s, u"phrasing"_s, u"--phrasing"_s, u"areas.grp"_s})
                .picture;
        QVERIFY(colored(phrasing, 4.0, 247, areaBlue));
        const QImage normal = draw(quarter, bare + QStringList{u"--mode"_s, u"normal"_s}).picture;
        QVERIFY(colored(normal, 4.0, levelRow, green));
    }

    void iconsMarkTheCuts() {
        const QImage plain = draw(cutTake(), bare).picture;
        for (const QString& icons : {u"arrows"_s, u"circles"_s}) {
            const QImage picture = draw(cutTake(), bare + QStringList{u"--shini"_s, icons}).picture;
            QVERIFY(iconAt(plain, picture, 3.0) > 50);
            QCOMPARE(iconAt(plain, picture, 4.0), 0);
            QVERIFY(iconAt(plain, picture, 5.0) > 50);
        }
        QVERIFY(draw(cutTake(), bare + QStringList{u"--shini"_s, u"arrows"_s}).picture !=
                draw(cutTake(), bare + QStringList{u"--shini"_s, u"circles"_s}).picture);
        const QImage middle = draw(cutTake(), bare + QStringList{u"--shini"_s, u"middle"_s}).picture;
        QCOMPARE(iconAt(plain, middle, 3.0), 0);
        QVERIFY(iconAt(plain, middle, 4.0) > 50);
        QCOMPARE(iconAt(plain, middle, 5.0), 0);
    }

    void aClosedFaderIsDrawnInThreeWays() {
        const auto at = [this](const QString& how) {
            const QStringList more = how.isEmpty() ? bare : bare + QStringList{u"--fader"_s, how};
            return draw(cutTake(), more).picture.pixelColor(column(4.0), 332);
        };
        const QColor shown = at(u"shown"_s);
        QVERIFY(shown.green() > 130 && shown.red() < 60);
        QCOMPARE(at(QString()), shown);
        QCOMPARE(at(u"hidden"_s), ground);
        const QColor inverted = at(u"inverted"_s);
        QVERIFY(inverted.red() > 130 && inverted.blue() > 130 && inverted.green() < 60);
    }

    void theWidthIsThatOfTheCurve() {
        for (const int width : {1, 2, 12, 100}) {
            const QImage picture =
                draw(levelTake(), bare + QStringList{u"--width"_s, QString::number(width)}).picture;
            // A width of one pixel lies between two rows.
            const QRect line(column(4.5), 40, 1, 415);
            QCOMPARE(line.height() - countOf(picture, line, ground), width == 1 ? 2 : width);
        }
    }

    void theDiscStandsInTheCornerAndFollowsTheCursor() {
        const Points quarters =
            takeOf(8.0, [](double beat, TakePoint& p) { p.angle = beat < 4.0 ? 90.0 : 270.0; });
        const QPoint rim(159, 31);
        QCOMPARE(draw(quarters, bare).picture.pixelColor(rim), ground);
        QCOMPARE(draw(quarters, bare + QStringList{u"--disc"_s, u"off"_s}).picture.pixelColor(rim), ground);
        const QStringList disc = bare + QStringList{u"--disc"_s, u"on"_s};
        const QImage end = draw(quarters, disc).picture;
        QCOMPARE(end.pixelColor(rim), grey);
        QCOMPARE(end.pixelColor(65, 117), green); // the needle points to the left
        QCOMPARE(end.pixelColor(185, 117), ground);
        const QImage early = draw(quarters, disc + QStringList{u"--cursor"_s, u"2"_s}).picture;
        QCOMPARE(early.pixelColor(65, 117), ground);
        QCOMPARE(early.pixelColor(185, 117), green);
    }

    void theCursorStandsAtItsBeat() {
        for (const double beat : {0.0, 2.5, 8.5}) {
            const QImage picture =
                draw(levelTake(), bare + QStringList{u"--cursor"_s, QString::number(beat)}).picture;
            QVERIFY(colored(picture, beat, 100, red));
            QCOMPARE(countOf(picture, QRect(0, 100, 1900, 1), red), 1);
        }
        QCOMPARE(countOf(draw(levelTake(), bare + QStringList{u"--cursor"_s, u"900"_s}).picture, red), 0);
    }

    void aSampleShowsItsWave() {
        const QStringList areas = bare + QStringList{u"--phrasing"_s, u"areas.grp"_s};
        const QRect bar(45, 400, 1800, 100);
        const QRect heard(45, 40, 1855, 90);
        const QImage without = draw(turningTake(), areas).picture;
        QCOMPARE(countOf(without, bar, areaRed) + countOf(without, heard, areaRed), 0);
        const QStringList wave = areas + QStringList{u"--wave"_s, u"sample.wav"_s};
        const QImage with = draw(turningTake(), wave).picture;
        QVERIFY(countOf(with, bar, areaRed) > 1000);
        QVERIFY(countOf(with, bar, areaBlue) > 1000);
        QVERIFY(countOf(with, heard, areaRed) > 1000);
        QCOMPARE(draw(turningTake(), wave + QStringList{u"--direct"_s, u"on"_s}).picture, with);
        const QImage silent = draw(turningTake(), wave + QStringList{u"--direct"_s, u"off"_s}).picture;
        QVERIFY(countOf(silent, bar, areaRed) > 1000);
        QCOMPARE(countOf(silent, heard, areaRed), 0);
    }

    void aRecordAtRestIsNotHeard() {
        const Points resting = takeOf(8.0, [](double beat, TakePoint& p) {
            p.angle = beat < 4.0 ? beat * 20.0 : 80.0; // in the first area, then still
        });
        const QImage picture =
            draw(resting, bare + QStringList{u"--phrasing"_s, u"areas.grp"_s, u"--wave"_s, u"sample.wav"_s})
                .picture;
        const auto wave = [&](double from, double to) {
            return countOf(picture, QRect(QPoint(column(from), 40), QPoint(column(to), 80)), areaRed);
        };
        QVERIFY(wave(0.1, 3.9) > 1000);
        QCOMPARE(wave(4.1, 7.9), 0);
    }

    void theTempoIsTheTakesOwnTheOptionsOrTheProgramsDefault() {
        QVERIFY(draw(levelTake(), {u"--bpm"_s, u"60"_s}).says(u"tempo 60\nbeats 0.00 to 5.00\n"_s));
        QVERIFY(draw(levelTake(), {u"--bpm"_s, u"92.75"_s}).says(u"tempo 92.75\n"_s));
        for (const qint32 none : {0, -120, 100000}) {
            QVERIFY(m_run.put(u"in.grw"_s, levelTake(), none));
            const Drawn drawn = m_run.draw();
            QCOMPARE(drawn.exitCode, 0);
            // 4 seconds, and a beat
            QVERIFY2(drawn.says(u"tempo 84 by default\nbeats 0.00 to 6.60\n"_s), qPrintable(drawn.said));
        }
    }

    void theRateIsTheOptionsThatOfTheNameOr48000() {
        QVERIFY(draw(levelTake(), {u"--rate"_s, u"96000"_s}).says(u"beats 0.00 to 5.00\n"_s));
        const auto named = [this](const QString& name, const QStringList& more = {}) {
            m_run.put(name, levelTake());
            return m_run.run(QStringList{name, u"out.png"_s} + more).said;
        };
        const QString recorded = u"3_20240131-101112,345_USB Audio_hw 2_0_2p0_96000.grw"_s;
        QVERIFY(named(recorded).contains(u"beats 0.00 to 5.00\n"_s));
        QVERIFY(named(recorded, {u"--rate"_s, u"48000"_s}).contains(u"beats 0.00 to 9.00\n"_s));
        QVERIFY(named(u"my take_96000.grw"_s).contains(u"beats 0.00 to 9.00\n"_s));
    }

    void aStretchIsCountedAsTheGridCounts() {
        const Drawn part = draw(cutTake(), noLogo + QStringList{u"--from"_s, u"2"_s, u"--beats"_s, u"4"_s});
        QVERIFY(part.says(u"beats 2.00 to 6.00\n"_s));
        const auto at = [&](double beat) {
            return part.picture.pixelColor(column(beat, 2.0, 4.0), levelRow);
        };
        QCOMPARE(at(2.9), green);
        QVERIFY(at(3.1) != green);
        QVERIFY(at(4.9) != green);
        QCOMPARE(at(5.1), green);
        // The bar at beat 4 stands in the middle.
        QCOMPARE(countOf(part.picture, QRect(column(4.0, 2.0, 4.0) - 3, 100, 7, 1), grey), 4);
        QCOMPARE(countOf(part.picture, QRect(column(3.0, 2.0, 4.0) - 3, 100, 7, 1), grey), 0);

        QVERIFY(draw(cutTake(), {u"--beats"_s, u"4.5"_s}).says(u"beats 0.00 to 4.50\n"_s));
        const Drawn early = draw(cutTake(), {u"--from"_s, u"-2"_s, u"--beats"_s, u"4"_s});
        QVERIFY(early.says(u"beats -2.00 to 2.00\n"_s));
        QCOMPARE(early.picture.pixelColor(column(-1.0, -2.0, 4.0) + 5, levelRow), ground);
        QCOMPARE(early.picture.pixelColor(column(1.5, -2.0, 4.0), levelRow), green);
    }

    void theBeatAtTheLeftEdgeHasItsNumber() {
        // At 84 a minute a beat isn't a whole number of frames.
        for (const QString& from : {u"-1"_s, u"0"_s, u"1"_s, u"5"_s}) {
            const QImage picture = draw(levelTake(), noLogo + QStringList{u"--bpm"_s, u"84"_s, u"--from"_s,
                                                                          from, u"--beats"_s, u"4"_s})
                                       .picture;
            const QRect label(35, 466, 20, 12);
            QVERIFY2(countOf(picture, label, ground) < label.width() * label.height(), qPrintable(from));
        }
    }

    void sizeAndScaleAreThoseOfThePicture() {
        const QImage low = draw(levelTake(), bare + QStringList{u"--size"_s, u"400x300"_s}).picture;
        QCOMPARE(low.size(), QSize(400, 300));
        const int row = int(260.0 - 30.0 * 225.0 / 100.0);
        QCOMPARE(low.pixelColor(200, row), green);
        for (const double scale : {0.5, 1.25, 2.0}) {
            const Drawn drawn = draw(levelTake(), bare + QStringList{u"--size"_s, u"400x300"_s, u"--scale"_s,
                                                                     QString::number(scale)});
            QCOMPARE(drawn.picture.size(), QSize(int(400 * scale), int(300 * scale)));
            QVERIFY(drawn.says(u"pixels %1x%2\n"_s.arg(400 * scale).arg(300 * scale)));
            // The curve is as wide as it looks on the graph.
            const QRect line(int(200 * scale), int(45 * scale), 1, int(210 * scale));
            const int ink = line.height() - countOf(drawn.picture, line, ground);
            QVERIFY2(std::abs(ink - 8.0 * scale) <= 1.0, qPrintable(QString::number(ink)));
            QCOMPARE(drawn.picture.pixelColor(int(200 * scale), int(row * scale)), green);
        }
        for (const QString& size : {u"64x64"_s, u"64x2000"_s, u"16384x64"_s}) {
            QVERIFY(!draw(levelTake(), {u"--size"_s, size}).picture.isNull());
        }
    }

    void theLastPixelsOfAnOddScaleAreFilled() {
        const QImage picture =
            draw(levelTake(), bare + QStringList{u"--size"_s, u"401x301"_s, u"--scale"_s, u"1.3"_s}).picture;
        QCOMPARE(picture.size(), QSize(521, 391));
        QCOMPARE(picture.pixelColor(520, 390), ground);
        QCOMPARE(picture.pixelColor(520, 0), ground);
    }

    void theSameTakeGivesTheSameBytesOnEveryDesktop() {
        const QStringList all{u"--phrasing"_s, u"areas.grp"_s, u"--wave"_s,  u"sample.wav"_s,
                              u"--disc"_s,     u"on"_s,        u"--shini"_s, u"circles"_s};
        QVERIFY(!draw(cutTake(), all).picture.isNull());
        const QByteArray first = m_run.get(u"out.png"_s);
        QVERIFY(!first.contains("tIME"));
        QTest::qWait(1100); // another second
        for (const auto& [name, value] : std::initializer_list<std::pair<const char*, QString>>{
                 {"QT_SCALE_FACTOR", u"2"_s},
                 {"QT_FONT_DPI", u"200"_s},
                 {"QT_STYLE_OVERRIDE", u"Windows"_s},
                 {"QT_QPA_PLATFORM", u"no such platform"_s},
                 {"LC_ALL", u"fr_FR.ISO-8859-1"_s},
                 {"DISPLAY", u":4711"_s}}) {
            m_run.set(name, value);
            QVERIFY(!draw(cutTake(), all).picture.isNull());
            QVERIFY2(m_run.get(u"out.png"_s) == first, name);
        }
        m_run.unset("XDG_RUNTIME_DIR");
        QVERIFY(!draw(cutTake(), all).picture.isNull());
        QVERIFY(m_run.get(u"out.png"_s) == first);
    }

    void aLongTakeIsDrawnWhole() {
        Points points;
        for (int i = 0; i < 600000; ++i) { // an hour or so at 300 frames a point
            points.push_back({i * 300, std::sin(i * 0.001) * 1000.0, i * 0.1});
        }
        const Drawn drawn = draw(points, bare);
        QVERIFY(drawn.says(u"points 600000\n"_s));
        QVERIFY(countOf(drawn.picture, green) > 50000);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Draw)
#include "tst_draw.moc"
