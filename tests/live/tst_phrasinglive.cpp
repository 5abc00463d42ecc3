// The keys of the areas in a running session: the whole program on a real sound server, virtual decks that
// turn the records, key events to the window, and what the window shows then.

#include "livephrasing.h"
#include "livepicture.h"

#include "dialog/savecolorphrasing.h"
#include "phrasing/phrasingfile.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int pointStep = 64;       // frames
constexpr int pointsOfATurn = 1350; // at 33 1/3 rpm
const QColor ground(43, 43, 43);    // of a disc without areas
const QColor grey(175, 176, 177);

QRgb paletteColor(int place) {
    static constexpr std::array colors{qRgb(208, 0, 24), qRgb(254, 194, 0), qRgb(1, 194, 193)};
    return colors[std::size_t(place)];
}

Setting& setting() {
    return *Singleton::instance().setting();
}

} // namespace

class tst_PhrasingLive : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;
    JackServer m_server;

    // Every deck in turn is the one that is worked; the other one is to stay as it is.
    static void rowsForTheDecks() {
        QTest::addColumn<int>("worked");
        QTest::newRow("deck A") << 0;
        QTest::newRow("deck B") << 1;
    }

    // A curve that was neither restarted nor left out anything: its points stand at even steps from 0 on.
    static void checkUndisturbed(const Live& live, const QSignalSpy& restarts) {
        QCOMPARE(restarts.size(), 0);
        QVERIFY(Session::mode().modeRun());
        for (const DeckKeys& deck : decks) {
            const auto points = live.points(deck);
            for (std::size_t i = 0; i < points.size(); ++i) {
                QCOMPARE(points[i].time, double(i) * pointStep);
            }
        }
        for (const auto* recorder : live.session().connection().recorders()) {
            QCOMPARE(recorder->overflows(), 0U);
        }
    }

    // What was written for the deck against a decode of its own take.
    void checkTake(const QString& file, std::size_t points) {
        const QString again = m_data.filePath(u"again.grw"_s);
        const QDir folder = Session::folder();
        QCOMPARE(
            QProcess::execute(QDir(QStringLiteral(GRAMO_BIN_DIR)).filePath(u"gramoscope-decode"_s),
                              {u"--timecode"_s, u"generic_V2"_s, folder.filePath(file + u".wav"_s), again}),
            0);
        QFile live(folder.filePath(file + u".grw"_s));
        QFile decoded(again);
        QVERIFY(live.open(QIODevice::ReadOnly) && decoded.open(QIODevice::ReadOnly));
        const QByteArray a = live.readAll();
        const QByteArray b = decoded.readAll();
        constexpr qsizetype head = 8;
        constexpr qsizetype record = 23; // the last byte is the fader, which the take knows nothing about
        QCOMPARE(a.size(), head + record * qsizetype(points));
        QCOMPARE(a.size(), b.size());
        for (qsizetype at = head; at < a.size(); at += record) {
            QVERIFY2(a.mid(at, record - 1) == b.mid(at, record - 1),
                     qPrintable(u"point %1"_s.arg((at - head) / record)));
        }
    }

private Q_SLOTS:
    void initTestCase() {
        // As delivered, with its style.
        QCOMPARE(QProcess::execute(u"cp"_s,
                                   {u"-R"_s, QDir(QStringLiteral(GRAMO_TEST_DIR)).filePath(u"../appdata"_s),
                                    m_data.filePath(u"AppData"_s)}),
                 0);
        useDataFolder(m_data.filePath(u"AppData"_s));
        QVERIFY(m_server.start());
    }
    void init() {
        Singleton::instance().recordingLooperTraining()->setBpmEffective(168.0);
        Session::mode().setDisplayMode(ModelDisplay::NORMAL);
        // Nothing but curves on the plot, wide enough for the middle of each to have its pure colour.
        setting().setGraphLogo(false);
        setting().setGraphGrid(false);
        setting().setGraphVinylPosition(false);
        setting().setGraphVinylColorRotation(false);
        setting().setGraphCurveNoSound(false);
        setting().setGraphShiniMode(0);
        setting().setCurveOnSize(7);
    }

    void theFiveKeysEditAtTheAngleThatThePointsCarry_data() { rowsForTheDecks(); }
    void theFiveKeysEditAtTheAngleThatThePointsCarry() {
        QFETCH(int, worked);
        const DeckKeys& deck = decks[std::size_t(worked)];
        const DeckKeys& other = decks[std::size_t(1 - worked)];
        Live live(u"play"_s);
        QVERIFY(live.start());
        QSignalSpy restarts(live.graph(deck), &QWPainter::s_InitStart);
        live.press(other, other.make); // something to lose
        const QList<Area> otherAreas = live.areas(other);
        QCOMPARE(otherAreas.size(), 1);

        // Makes an area from 0 to the needle.
        QVERIFY(live.waitForAngle(deck, 100.0, 140.0));
        Moment moment = live.press(deck, deck.make);
        QCOMPARE(live.areas(deck).size(), 1);
        const double a = live.areas(deck)[0].end;
        QVERIFY(live.carried(deck, moment, a));
        QCOMPARE(live.areas(deck), (QList<Area>{{0.0, a, paletteColor(0)}}));

        // Moves its start to the needle.
        QVERIFY(live.waitForAngle(deck, 30.0, 60.0));
        moment = live.press(deck, deck.make, Qt::ShiftModifier);
        const double s = live.areas(deck)[0].start;
        QVERIFY(live.carried(deck, moment, s));
        QCOMPARE(live.areas(deck), (QList<Area>{{s, a, paletteColor(0)}}));

        // Fills the gap around the needle.
        QVERIFY(live.waitForAngle(deck, a + 40.0, 330.0));
        live.press(deck, deck.make, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(live.areas(deck), (QList<Area>{{s, a, paletteColor(0)}, {a, 360.0, paletteColor(1)}}));

        // Cuts the area under the needle short.
        QVERIFY(live.waitForAngle(deck, a + 40.0, a + 100.0));
        moment = live.press(deck, deck.make);
        const double e = live.areas(deck)[1].end;
        QVERIFY(live.carried(deck, moment, e));
        QCOMPARE(live.areas(deck), (QList<Area>{{s, a, paletteColor(0)}, {a, e, paletteColor(1)}}));

        // Goes on from there.
        QVERIFY(live.waitForAngle(deck, e + 20.0, 350.0));
        moment = live.press(deck, deck.make);
        QCOMPARE(live.areas(deck).size(), 3);
        const double x = live.areas(deck)[2].end;
        QVERIFY(live.carried(deck, moment, x));
        QCOMPARE(live.areas(deck),
                 (QList<Area>{{s, a, paletteColor(0)}, {a, e, paletteColor(1)}, {e, x, paletteColor(2)}}));

        // Deletes the one under the needle.
        QVERIFY(live.waitForAngle(deck, s + 5.0, a - 15.0));
        live.press(deck, deck.remove);
        QCOMPARE(live.areas(deck), (QList<Area>{{a, e, paletteColor(1)}, {e, x, paletteColor(2)}}));
        live.press(deck, deck.remove, Qt::ShiftModifier);
        QVERIFY(live.areas(deck).isEmpty());

        QCOMPARE(live.areas(other), otherAreas);
        checkUndisturbed(live, restarts);
        QVERIFY(live.session().stop());
    }

    void anglesAreMeasuredOnceFromTheUsersZero_data() { rowsForTheDecks(); }
    void anglesAreMeasuredOnceFromTheUsersZero() {
        QFETCH(int, worked);
        const DeckKeys& deck = decks[std::size_t(worked)];
        Live live(u"play"_s);
        QVERIFY(live.start());
        QSignalSpy restarts(live.graph(deck), &QWPainter::s_InitStart);
        QVERIFY(live.waitForAngle(deck, 120.0, 200.0));
        const Moment mark = live.press(deck, deck.zero);
        // The point behind the mark is at 0, the one before it was not: some 0.24 degrees lie between two.
        const auto points = live.points(deck);
        std::size_t first = mark.first + 1;
        while (first < points.size() && std::abs(points[first].angle - points[first - 1].angle) < 90.0) {
            ++first;
        }
        QVERIFY(first <= mark.last + 1);
        QVERIFY2(points[first].angle < 2.0 * double(first - mark.first),
                 qPrintable(QString::number(points[first].angle)));

        QVERIFY(live.waitForAngle(deck, 60.0, 90.0));
        const Moment moment = live.press(deck, deck.make);
        const QList<Area> areas = live.areas(deck);
        QCOMPARE(areas.size(), 1);
        QVERIFY(live.carried(deck, moment, areas[0].end));
        QVERIFY2(areas[0].end > 60.0 && areas[0].end < 110.0, qPrintable(QString::number(areas[0].end)));
        checkUndisturbed(live, restarts);
        QVERIFY(live.session().stop());
    }

    void theCurveHasTheAreasColourFromThatMomentOn_data() {
        QTest::addColumn<int>("worked");
        QTest::addColumn<ModelDisplay::EnumDisplay>("display");
        QTest::newRow("deck A, position") << 0 << ModelDisplay::NORMAL;
        QTest::newRow("deck B, position") << 1 << ModelDisplay::NORMAL;
        QTest::newRow("deck A, phrasing") << 0 << ModelDisplay::PHRASING;
        QTest::newRow("deck B, drumming") << 1 << ModelDisplay::DRUMMING;
    }
    void theCurveHasTheAreasColourFromThatMomentOn() {
        QFETCH(int, worked);
        QFETCH(ModelDisplay::EnumDisplay, display);
        const DeckKeys& deck = decks[std::size_t(worked)];
        const DeckKeys& other = decks[std::size_t(1 - worked)];
        // Outside all areas this display has no line to look at.
        const bool linesOutside = display != ModelDisplay::PHRASING;
        Session::mode().setDisplayMode(display);
        Live live(u"play"_s);
        QVERIFY(live.start());
        QSignalSpy restarts(live.graph(deck), &QWPainter::s_InitStart);

        // Without areas: the deck's colour everywhere.
        QVERIFY(live.waitForPoints(deck, pointsOfATurn));
        QVERIFY(live.waitForAngle(deck, 150.0, 200.0));
        CurveLook look = LivePicture(live).curve(deck, deck.curve);
        QVERIFY2(look.wrong.isEmpty(), qPrintable(look.wrong));
        QCOMPARE(look.inside, 0);
        QVERIFY(look.outside > 50);

        const Moment moment = live.press(deck, deck.make);
        QVERIFY(live.carried(deck, moment, live.areas(deck)[0].end));
        QVERIFY(live.waitForPoints(deck, moment.last + std::size_t(pointsOfATurn * 1.2)));
        const QColor painterGround = live.graph(deck)->palette().color(QPalette::Window);
        look = LivePicture(live).curve(deck, painterGround, moment.last);
        qInfo("in the area's colour: %d places, %d of them behind the press; outside: %d", look.inside,
              look.insideLater, look.outside);
        QVERIFY2(look.wrong.isEmpty(), qPrintable(look.wrong));
        QVERIFY(look.inside > 30);
        QVERIFY(look.insideLater > 15);
        QCOMPARE(look.outside > 30, linesOutside);

        // The same places in grey if the user likes.
        setting().setGraphCurveNoSound(true);
        look = LivePicture(live).curve(deck, grey, moment.last);
        QVERIFY2(look.wrong.isEmpty(), qPrintable(look.wrong));
        QVERIFY(look.insideLater > 15);
        QCOMPARE(look.outside > 30, linesOutside);

        look = LivePicture(live).curve(other, other.curve);
        QVERIFY2(look.wrong.isEmpty(), qPrintable(look.wrong));
        QVERIFY(look.outside > 50);

        // The area goes, and its colour with it.
        QVERIFY(live.waitForAngle(deck, 20.0, 100.0));
        live.press(deck, deck.remove);
        look = LivePicture(live).curve(deck, deck.curve);
        QVERIFY2(look.wrong.isEmpty(), qPrintable(look.wrong));
        QCOMPARE(look.inside, 0);
        QVERIFY(look.outside > 50);
        checkUndisturbed(live, restarts);
        QVERIFY(live.session().stop());
    }

    void theDiscShowsTheSlice_data() { rowsForTheDecks(); }
    void theDiscShowsTheSlice() {
        QFETCH(int, worked);
        const DeckKeys& deck = decks[std::size_t(worked)];
        const DeckKeys& other = decks[std::size_t(1 - worked)];
        setting().setGraphVinylPosition(true);
        Live live(u"play"_s);
        QVERIFY(live.start());
        // Between the hub and the rim, clear of the marks at the quarters.
        constexpr std::array inTheArea{30.0, 60.0, 120.0, 150.0};
        constexpr double outsideIt = 255.0;

        QVERIFY(live.waitForAngle(deck, 300.0, 325.0)); // the needle isn't in the way
        for (const double angle : inTheArea) {
            QCOMPARE(LivePicture(live).disc(deck, angle), ground);
        }
        QVERIFY(live.waitForAngle(deck, 190.0, 220.0));
        live.press(deck, deck.make);
        const Area area = live.areas(deck)[0];
        QVERIFY(live.waitForAngle(deck, 300.0, 325.0));
        const LivePicture still(live);
        for (const double angle : inTheArea) {
            QCOMPARE(still.disc(deck, angle), QColor(area.color));
        }
        QCOMPARE(still.disc(deck, outsideIt), grey);
        QCOMPARE(still.disc(deck, still.needle(deck)), deck.curve);
        QCOMPARE(still.disc(other, 60.0), ground);

        // The slices turn with the record, the needle stands at the top.
        setting().setGraphVinylColorRotation(true);
        QVERIFY(live.waitForAngle(deck, 300.0, 320.0));
        const LivePicture turning(live);
        QCOMPARE(turning.disc(deck, 0.0), deck.curve);
        QCOMPARE(turning.disc(deck, 110.0 - turning.needle(deck)), QColor(area.color));
        QCOMPARE(turning.disc(deck, outsideIt - turning.needle(deck)), grey);
        QVERIFY(live.session().stop());
    }

    void editsOfScratchedRecordsLeaveARecordedTakeWhole() {
        Live live(u"baby,walk"_s);
        QVERIFY(live.start(true));
        QSignalSpy restarts(live.graph(decks[0]), &QWPainter::s_InitStart);
        QSignalSpy restartsB(live.graph(decks[1]), &QWPainter::s_InitStart);
        QRandomGenerator random(5);
        const Qt::KeyboardModifiers filling = Qt::ControlModifier | Qt::ShiftModifier;
        int ends = 0;
        int starts = 0;
        for (int round = 0; round < 80; ++round) {
            QTest::qWait(random.bounded(90));
            const std::size_t worked = std::size_t(random.bounded(2));
            const DeckKeys& deck = decks[worked];
            const DeckKeys& other = decks[1 - worked];
            const QList<Area> before = live.areas(deck);
            const QList<Area> otherAreas = live.areas(other);
            const int what = random.bounded(10);
            const bool makes = what < 5;
            const bool starting = what >= 5 && what < 8;
            const bool removes = what == 9;
            const Moment moment = live.press(deck, removes ? deck.remove : deck.make,
                                             starting           ? Qt::ShiftModifier
                                             : makes || removes ? Qt::NoModifier
                                                                : filling);
            const QList<Area> after = live.areas(deck);
            QCOMPARE(live.areas(other), otherAreas);
            for (qsizetype i = 0; i < after.size() && (makes || starting); ++i) {
                const bool isNew = i >= before.size();
                QVERIFY(!isNew || makes);
                if (isNew || after[i].end != before[i].end) {
                    QVERIFY(makes && live.carried(deck, moment, after[i].end));
                    ++ends;
                }
                if (!isNew && after[i].start != before[i].start) {
                    QVERIFY(starting && live.carried(deck, moment, after[i].start));
                    ++starts;
                }
            }
        }
        qInfo("%d ends and %d starts at the needle", ends, starts);
        QVERIFY(ends > 10 && starts > 0);
        QCOMPARE(restartsB.size(), 0);
        checkUndisturbed(live, restarts);
        QVERIFY(live.session().stop());
        const PathFile& files = *Singleton::instance().pathFile();
        checkTake(files.fileDeckA(), live.points(decks[0]).size());
        checkTake(files.fileDeckB(), live.points(decks[1]).size());
    }

    void theAreasAreSavedDuringTheRunAndReadBack_data() { rowsForTheDecks(); }
    void theAreasAreSavedDuringTheRunAndReadBack() {
        QFETCH(int, worked);
        const DeckKeys& deck = decks[std::size_t(worked)];
        Live live(u"play"_s);
        QVERIFY(live.start());
        QSignalSpy restarts(live.graph(deck), &QWPainter::s_InitStart);
        QVERIFY(live.waitForAngle(deck, 100.0, 140.0));
        live.press(deck, deck.make);
        QVERIFY(live.waitForAngle(deck, 200.0, 300.0));
        live.press(deck, deck.make);
        const QList<Area> areas = live.areas(deck);
        QCOMPARE(areas.size(), 2);

        live.press(deck, deck.save);
        const QPointer<SaveColorPhrasing> dialog(live.graph(deck)->findChild<SaveColorPhrasing*>());
        QVERIFY(dialog != nullptr && dialog->isVisible());
        // Letters that are keys of the areas, and the space that would stop the session.
        const QString name = u"eerio sj 1 of %1"_s.arg(worked);
        for (const QChar letter : name) {
            QTest::keyClick(dialog->windowHandle(), letter.toLatin1());
        }
        QCOMPARE(dialog->fileName(), name);
        QCOMPARE(live.areas(deck), areas);
        const std::size_t open = live.points(deck).size();

        QStringList said;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&said] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                said << box->text();
                QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
            }
        });
        look.start(300);
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
        QTRY_COMPARE(said, QStringList{u"New file has been created and loaded into color tab !!"_s});
        QTRY_VERIFY(dialog.isNull());
        look.stop();
        // The session went on meanwhile: 300 ms are 225 points.
        QVERIFY(live.points(deck).size() > open + 150);
        QVERIFY(live.waitForPoints(deck, live.points(deck).size() + 100));
        checkUndisturbed(live, restarts);

        const auto read = readGRPFile(pathColor(name + u".grp"_s));
        QVERIFY(read != nullptr);
        QCOMPARE(read->name(), name);
        QCOMPARE(areasOf(read->listPhrasing()), areas); // to the last bit
        QVERIFY(live.session().stop());
    }
};

GRAMO_TEST_MAIN(tst_PhrasingLive)
#include "tst_phrasinglive.moc"
