// The command line of gramoscope-draw: every option, what is left open, and every refusal.
#include "drawoptions.h"

#include "support/testmain.h"

#include <QTest>

#include <map>
#include <optional>

using namespace Qt::Literals::StringLiterals;
using Result = DrawOptionsParser::Result;

namespace {

QStringList line(const QStringList& more) {
    return QStringList{u"gramoscope-draw"_s, u"in.grw"_s, u"out.png"_s} + more;
}

std::optional<DrawOptions> parsed(const QStringList& more) {
    DrawOptionsParser parser;
    return parser.parse(line(more)) == Result::Draw ? std::optional(parser.options()) : std::nullopt;
}

} // namespace

class tst_DrawOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsLeftOpenIsTheProgramsOwn() {
        const auto options = parsed({});
        QVERIFY(options);
        QCOMPARE(options->take, u"in.grw"_s);
        QCOMPARE(options->output, u"out.png"_s);
        QCOMPARE(options->inputs(), QStringList{u"in.grw"_s});
        QCOMPARE(options->deck, ModelGraph::INPUT_DECKA);
        QCOMPARE(options->display, ModelDisplay::NORMAL);
        QVERIFY(!options->shini && !options->fader && !options->width);
        QVERIFY(!options->direct && !options->grid && !options->logo);
        QVERIFY(!options->disc);
        QVERIFY(!options->bpm && !options->rate && !options->beats && !options->cursor);
        QCOMPARE(options->from, 0.0);
        QCOMPARE(options->size, QSize(1900, 500));
        QCOMPARE(options->scale, 1.0);
        QCOMPARE(options->imageSize(), QSize(1900, 500));
    }

    void filesComeBeforeBehindAndBetweenTheOptions() {
        DrawOptionsParser parser;
        QCOMPARE(parser.parse({u"draw"_s, u"--bpm"_s, u"90"_s, u"a.grw"_s, u"--reference"_s, u"r.grw"_s,
                               u"b.PNG"_s, u"--phrasing=p.grp"_s, u"--wave"_s, u"w.wav"_s}),
                 Result::Draw);
        QCOMPARE(parser.options().take, u"a.grw"_s);
        QCOMPARE(parser.options().output, u"b.PNG"_s);
        QCOMPARE(parser.options().bpm, 90.0);
        QCOMPARE(parser.options().inputs(), (QStringList{u"a.grw"_s, u"r.grw"_s, u"p.grp"_s, u"w.wav"_s}));
    }

    void aNameThatStartsWithADashFollowsTwoDashes() {
        DrawOptionsParser parser;
        QCOMPARE(parser.parse({u"draw"_s, u"--"_s, u"-in.grw"_s, u"-out.png"_s}), Result::Draw);
        QCOMPARE(parser.options().take, u"-in.grw"_s);
    }

    void everyChoiceIsRead() {
        QCOMPARE(parsed({u"--deck"_s, u"a"_s})->deck, ModelGraph::INPUT_DECKA);
        QCOMPARE(parsed({u"--deck"_s, u"b"_s})->deck, ModelGraph::INPUT_DECKB);
        QCOMPARE(parsed({u"--mode"_s, u"normal"_s})->display, ModelDisplay::NORMAL);
        QCOMPARE(parsed({u"--mode"_s, u"phrasing"_s})->display, ModelDisplay::PHRASING);
        QCOMPARE(parsed({u"--mode"_s, u"drumming"_s})->display, ModelDisplay::DRUMMING);
        QCOMPARE(parsed({u"--shini"_s, u"arrows"_s})->shini, ModelShini::Arrows);
        QCOMPARE(parsed({u"--shini"_s, u"circles"_s})->shini, ModelShini::Circles);
        QCOMPARE(parsed({u"--shini"_s, u"middle"_s})->shini, ModelShini::Middle);
        QCOMPARE(parsed({u"--fader"_s, u"shown"_s})->fader, ClosedFader::Shown);
        QCOMPARE(parsed({u"--fader"_s, u"hidden"_s})->fader, ClosedFader::Hidden);
        QCOMPARE(parsed({u"--fader"_s, u"inverted"_s})->fader, ClosedFader::Inverted);
    }

    void everySwitchIsRead() {
        QCOMPARE(parsed({u"--disc"_s, u"on"_s})->disc, true);
        QCOMPARE(parsed({u"--disc"_s, u"off"_s})->disc, false);
        QCOMPARE(parsed({u"--direct"_s, u"on"_s})->direct, true);
        QCOMPARE(parsed({u"--direct"_s, u"off"_s})->direct, false);
        QCOMPARE(parsed({u"--grid"_s, u"on"_s})->grid, true);
        QCOMPARE(parsed({u"--grid"_s, u"off"_s})->grid, false);
        QCOMPARE(parsed({u"--logo"_s, u"on"_s})->logo, true);
        QCOMPARE(parsed({u"--logo"_s, u"off"_s})->logo, false);
    }

    void everyNumberIsReadUpToItsBounds_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<double>("value");
        const auto row = [](const QString& option, const QString& text, double value,
                            const QStringList& more = {}) {
            QTest::addRow("%s %s", qPrintable(option), qPrintable(text))
                << QStringList{option, text} + more << value;
        };
        const QStringList eight{u"--beats"_s, u"8"_s};
        row(u"--bpm"_s, u"1"_s, 1.0);
        row(u"--bpm"_s, u"92.7"_s, 92.7);
        row(u"--bpm"_s, u"1000"_s, 1000.0);
        row(u"--rate"_s, u"8000"_s, 8000.0);
        row(u"--rate"_s, u"768000"_s, 768000.0);
        row(u"--from"_s, u"-1000000"_s, -1e6, eight);
        row(u"--from"_s, u"-2.5"_s, -2.5, eight);
        row(u"--from"_s, u"1e6"_s, 1e6, eight);
        row(u"--beats"_s, u"1.01"_s, 1.01);
        row(u"--beats"_s, u"35999.9"_s, 35999.9);
        row(u"--cursor"_s, u"-1"_s, -1.0);
        row(u"--cursor"_s, u"3.25"_s, 3.25);
        row(u"--scale"_s, u"0.5"_s, 0.5);
        row(u"--scale"_s, u"1.25"_s, 1.25);
        row(u"--scale"_s, u"8"_s, 8.0);
        row(u"--width"_s, u"1"_s, 1.0);
        row(u"--width"_s, u"100"_s, 100.0);
    }
    void everyNumberIsReadUpToItsBounds() {
        QFETCH(QStringList, arguments);
        QFETCH(double, value);
        const auto options = parsed(arguments);
        QVERIFY(options);
        const std::map<QString, double> values{
            {u"--bpm"_s, options->bpm.value_or(-7.0)},
            {u"--rate"_s, options->rate.value_or(-7.0)},
            {u"--from"_s, options->from},
            {u"--beats"_s, options->beats.value_or(-7.0)},
            {u"--cursor"_s, options->cursor.value_or(-7.0)},
            {u"--scale"_s, options->scale},
            {u"--width"_s, options->width.value_or(-7)},
        };
        QCOMPARE(values.at(arguments.constFirst()), value);
    }

    void theSizeIsThatOfTheGraphAndTheScaleMultipliesIt() {
        QCOMPARE(parsed({u"--size"_s, u"64x16384"_s})->size, QSize(64, 16384));
        QCOMPARE(parsed({u"--size"_s, u"16384x64"_s})->size, QSize(16384, 64));
        const auto scaled = parsed({u"--size"_s, u"1000x333"_s, u"--scale"_s, u"1.25"_s});
        QCOMPARE(scaled->size, QSize(1000, 333));
        QCOMPARE(scaled->imageSize(), QSize(1250, 416));
        QCOMPARE(parsed({u"--size"_s, u"8000x8000"_s})->imageSize(), QSize(8000, 8000)); // 64 million
    }

    void whatIsWrongIsNamed_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        const auto row = [](const QString& option, const QString& text) {
            QTest::addRow("%s \"%s\"", qPrintable(option), qPrintable(text))
                << QStringList{option, text} << option;
        };
        for (const QString& option : {u"--bpm"_s, u"--rate"_s, u"--beats"_s, u"--cursor"_s, u"--scale"_s,
                                      u"--width"_s, u"--size"_s}) {
            for (const QString& text :
                 {u""_s, u"nan"_s, u"inf"_s, u"-inf"_s, u"eight"_s, u"1e999"_s, u"8,5"_s, u"8 beats"_s}) {
                row(option, text);
            }
        }
        for (const QString& text : {u"0"_s, u"-84"_s, u"0.99"_s, u"1000.1"_s}) {
            row(u"--bpm"_s, text);
        }
        for (const QString& text : {u"0"_s, u"7999"_s, u"768001"_s}) {
            row(u"--rate"_s, text);
        }
        for (const QString& text : {u"0"_s, u"-8"_s, u"1"_s, u"36000"_s}) {
            row(u"--beats"_s, text);
        }
        for (const QString& text : {u"-1000001"_s, u"1000001"_s}) {
            row(u"--cursor"_s, text);
        }
        for (const QString& text : {u"0"_s, u"0.49"_s, u"8.01"_s, u"-1"_s}) {
            row(u"--scale"_s, text);
        }
        for (const QString& text : {u"0"_s, u"101"_s, u"-8"_s, u"2.5"_s}) {
            row(u"--width"_s, text);
        }
        for (const QString& text : {u"800"_s, u"800x"_s, u"x600"_s, u"63x600"_s, u"800x63"_s, u"16385x600"_s,
                                    u"800x16385"_s, u"-800x600"_s, u"800x600x3"_s, u"800X600"_s,
                                    u" 800x600"_s, u"99999999999x600"_s, u"800.5x600"_s, u"800x600\n"_s}) {
            row(u"--size"_s, text);
        }
        for (const QString& option : {u"--deck"_s, u"--mode"_s, u"--shini"_s, u"--fader"_s, u"--disc"_s,
                                      u"--direct"_s, u"--grid"_s, u"--logo"_s}) {
            for (const QString& text : {u""_s, u"none"_s, u"A"_s, u"ON"_s, u"1"_s}) {
                row(option, text);
            }
        }
        for (const QString& option : {u"--reference"_s, u"--phrasing"_s, u"--wave"_s}) {
            row(option, u""_s);
        }
        for (const QString& text : {u"nan"_s, u"inf"_s, u"here"_s, u""_s, u"-1000001"_s}) {
            QTest::addRow("--from \"%s\"", qPrintable(text))
                << QStringList{u"--from"_s, text, u"--beats"_s, u"8"_s} << u"--from"_s;
        }
        QTest::newRow("--from alone") << QStringList{u"--from"_s, u"4"_s} << u"--beats"_s;
        QTest::newRow("too many pixels") << QStringList{u"--size"_s, u"8001x8000"_s} << u"--size"_s;
        QTest::newRow("too wide at that scale")
            << QStringList{u"--size"_s, u"16384x64"_s, u"--scale"_s, u"2"_s} << u"--scale"_s;
        QTest::newRow("a third file") << QStringList{u"more.png"_s} << u"two files"_s;
        QTest::newRow("an unknown option") << QStringList{u"--faster"_s} << u"faster"_s;
        QTest::newRow("an option without its value") << QStringList{u"--bpm"_s} << u"bpm"_s;
    }
    void whatIsWrongIsNamed() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        DrawOptionsParser parser;
        QCOMPARE(parser.parse(line(arguments)), Result::Wrong);
        QVERIFY2(parser.error().contains(named), qPrintable(parser.error()));
    }

    void twoNamesAreNeededAndTheSecondIsAPicture() {
        const QStringList lines[] = {{},
                                     {u"in.grw"_s},
                                     {u"in.grw"_s, QString()},
                                     {QString(), u"out.png"_s},
                                     {u"in.grw"_s, u"other.grw"_s},
                                     {u"in.grw"_s, u"png"_s},
                                     {u"in.grw"_s, u"out.png/"_s}};
        for (const QStringList& files : lines) {
            DrawOptionsParser parser;
            QCOMPARE(parser.parse(QStringList{u"draw"_s} + files), Result::Wrong);
            QVERIFY(!parser.error().isEmpty());
        }
    }

    void helpAndVersionNeedNoFiles() {
        DrawOptionsParser parser;
        for (const QString& option : {u"--help"_s, u"-h"_s, u"--help-all"_s}) {
            QCOMPARE(parser.parse({u"draw"_s, option}), Result::Help);
        }
        QCOMPARE(parser.parse({u"draw"_s, u"--version"_s}), Result::Version);
    }

    void theHelpNamesEveryOption() {
        const QString help = DrawOptionsParser().helpText();
        for (const QString& option :
             {u"reference"_s, u"phrasing"_s, u"wave"_s, u"deck"_s, u"mode"_s, u"shini"_s, u"fader"_s,
              u"width"_s, u"disc"_s, u"direct"_s, u"grid"_s, u"logo"_s, u"bpm"_s, u"rate"_s, u"from"_s,
              u"beats"_s, u"cursor"_s, u"size"_s, u"scale"_s}) {
            QVERIFY2(help.contains(u"--%1 <"_s.arg(option)), qPrintable(option));
        }
        QVERIFY(help.contains(u"IN.grw"_s) && help.contains(u"OUT.png"_s));
    }

    void oneParserReadsSeveralLinesWithoutMixingThem() {
        DrawOptionsParser parser;
        QCOMPARE(parser.parse(line({u"--beats"_s, u"8"_s, u"--disc"_s, u"on"_s})), Result::Draw);
        QCOMPARE(parser.parse(line({u"--bpm"_s, u"no"_s})), Result::Wrong);
        QCOMPARE(parser.parse(line({})), Result::Draw);
        QVERIFY(parser.error().isEmpty());
        QVERIFY(!parser.options().beats && !parser.options().disc);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_DrawOptions)
#include "tst_drawoptions.moc"
