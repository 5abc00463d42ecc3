// Both graphs of a window drawn at the same time: pixel for pixel as if each were painted by itself.

#include "gui/support/deckgraph.h"
#include "phrasing/managephrasing.h"
#include "support/testmain.h"

#include <QApplication>
#include <QBackingStore>
#include <QProcess>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr double step = 500.0; // frames between two points
constexpr int pointsAFrame = 3;

/// Two decks one above the other, as the program lays them out, in a window that can be seen.
struct DeckWindow {
    explicit DeckWindow(QSize size = {1203, 607}) {
        auto* graphs = new QVBoxLayout(&window);
        graphs->setContentsMargins(3, 5, 7, 11); // at 125 % no corner lies on a whole device pixel
        graphs->setSpacing(2);
        for (DeckGraph* deck : decks()) {
            deck->graph.setParent(&window);
            graphs->addWidget(&deck->graph);
        }
        a->graph.setCompanion(&b->graph);
        b->graph.setCompanion(&a->graph);
        window.resize(size);
        window.show();
        while (!window.windowHandle()->isExposed()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::processEvents();
    }
    ~DeckWindow() {
        a->graph.setParent(nullptr);
        b->graph.setParent(nullptr);
    }
    std::array<DeckGraph*, 2> decks() const { return {a.get(), b.get()}; }

    void record(int count) {
        addPoints(a->main, count, step, [](int i, CurvePoint& point) {
            point.position = 200.0 * std::sin(i * 0.11);
            point.soundOn = i % 20 < 15 ? 1 : 0;
            turn(point, std::fmod(i * 2.5, 360.0));
        });
        addPoints(b->main, count, step, [](int i, CurvePoint& point) {
            point.position = -90.0 * std::sin(i * 0.07);
            turn(point, std::fmod(i * 1.5, 360.0));
        });
        for (DeckGraph* deck : decks()) {
            deck->setCursor(double(deck->main.size()) * step);
        }
    }
    /// What the pulse of the display does.
    void pulse() {
        for (DeckGraph* deck : decks()) {
            deck->graph.refresh();
        }
        QCoreApplication::processEvents();
    }
    QImage picture() const {
        return static_cast<const QImage*>(window.backingStore()->paintDevice())->copy();
    }
    /// The picture of the window with all of it painted anew, each graph alone.
    QImage paintedApart() {
        static_cast<QImage*>(window.backingStore()->paintDevice())->fill(Qt::magenta);
        for (QWidget* one : window.findChildren<QWidget*>()) {
            one->update();
        }
        window.repaint();
        return picture();
    }
    unsigned drawnBeside() const { return a->graph.drawnBeside() + b->graph.drawnBeside(); }

    QWidget window;
    std::unique_ptr<DeckGraph> a = std::make_unique<DeckGraph>(ModelGraph::INPUT_DECKA);
    std::unique_ptr<DeckGraph> b = std::make_unique<DeckGraph>(ModelGraph::INPUT_DECKB);
};

} // namespace

class TestQWPainterBeside : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void init() {
        resetSharedState();
        mode().modeCurrentTimerAutoresize_on();
        setting().setGraphVinylPosition(true);
    }

    void theSameAsApart_data() {
        QTest::addColumn<ModelDisplay::EnumDisplay>("display");
        QTest::newRow("normal") << ModelDisplay::NORMAL;
        QTest::newRow("phrasing") << ModelDisplay::PHRASING;
        QTest::newRow("drumming") << ModelDisplay::DRUMMING;
    }
    void theSameAsApart() {
        QFETCH(ModelDisplay::EnumDisplay, display);
        mode().setDisplayMode(display);
        DeckWindow decks;
        decks.a->graph.colorAreas()->setListPhrasing(
            {std::make_shared<QPhrasing>(u"hey"_s, QColor(208, 0, 24), 20.0, 140.0)});
        decks.record(400);
        for (int frame = 0; frame < 12; ++frame) {
            decks.record(pointsAFrame);
            const unsigned before = decks.drawnBeside();
            decks.pulse();
            QCOMPARE(decks.drawnBeside(), before + 1);
            const QImage together = decks.picture();
            QCOMPARE(decks.paintedApart(), together);
            QCOMPARE(decks.drawnBeside(), before + 1);
            // And what was recorded is seen: the frame isn't that of before.
            decks.record(20 * pointsAFrame);
            QVERIFY(decks.paintedApart() != together);
        }
    }
    void aGraphThatIsHiddenOrCoveredOrAloneIsPaintedByItself() {
        DeckWindow decks;
        decks.record(300);
        decks.b->graph.hide();
        decks.pulse();
        QCOMPARE(decks.drawnBeside(), 0U);
        decks.b->graph.show();
        decks.pulse();
        QCOMPARE(decks.drawnBeside(), 1U);

        // An opaque page above deck B, as the colour menu is.
        QWidget page(&decks.window);
        page.setAutoFillBackground(true);
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::magenta);
        page.setPalette(palette);
        page.setGeometry(10, decks.b->graph.y() + 10, 300, 100);
        page.show();
        decks.record(pointsAFrame);
        decks.pulse();
        QCOMPARE(decks.b->graph.drawnBeside(), 1U);
        const QImage covered = decks.picture();
        const QPoint inside = QPoint(10 + 150, decks.b->graph.y() + 60) * decks.window.devicePixelRatioF();
        QCOMPARE(covered.pixelColor(inside), QColor(Qt::magenta));
        QCOMPARE(decks.paintedApart(), covered);

        page.hide();
        QCoreApplication::processEvents();
        decks.pulse();
        const QImage together = decks.picture();
        QVERIFY(together.pixelColor(inside) != QColor(Qt::magenta));
        QCOMPARE(decks.paintedApart(), together);
    }
    // Something that isn't opaque may lie above the rest.
    void aPieceOfAGraphIsPaintedAndNothingElse() {
        DeckWindow decks;
        decks.record(400);
        const QImage whole = decks.paintedApart();
        const QRect graph(decks.a->graph.mapTo(&decks.window, QPoint()), decks.a->graph.size());
        const QRect left(40, 20, 300, 110); // of the graph
        for (const QRegion& kept : {QRegion(left), QRegion(0, 0, 1, 1)}) {
            auto* window = static_cast<QImage*>(decks.window.backingStore()->paintDevice());
            window->fill(Qt::magenta);
            decks.a->graph.repaint(QRegion(decks.a->graph.rect()) - kept);
            const QImage piece = decks.picture();
            const QRegion painted = QRegion(graph) - kept.translated(graph.topLeft());
            const double ratio = piece.devicePixelRatio();
            int compared = 0;
            for (int y = 0; y < piece.height(); ++y) {
                for (int x = 0; x < piece.width(); ++x) {
                    const QRect around(QPoint(int(x / ratio), int(y / ratio)) - QPoint(1, 1), QSize(3, 3));
                    const bool inside = (QRegion(around) - painted).isEmpty();
                    if (inside || !painted.intersects(around)) { // not at an edge, which may cut a pixel
                        QCOMPARE(piece.pixel(x, y), inside ? whole.pixel(x, y) : QColor(Qt::magenta).rgb());
                        ++compared;
                    }
                }
            }
            QVERIFY(compared > piece.width() * piece.height() * 9 / 10);
        }
    }
    void aPictureOfOneGraphLeavesTheOtherAsItIs() {
        DeckWindow decks;
        decks.record(300);
        decks.pulse();
        const QImage before = decks.picture();
        decks.record(20 * pointsAFrame);
        for (DeckGraph* deck : decks.decks()) {
            deck->graph.refresh(); // a repaint is due
        }
        const unsigned beside = decks.drawnBeside();
        const QImage picture = pictureOf(decks.a->graph);
        QCOMPARE(decks.picture(), before);
        QCOMPARE(decks.drawnBeside(), beside);
        QVERIFY(!picture.isNull());
        QCoreApplication::processEvents();
        QVERIFY(decks.picture() != before);
    }
    // At a fractional ratio neighbours share no row of device pixels, wherever they lie.
    void atEveryHeightAndPlace() {
        DeckWindow decks;
        decks.window.layout()->setContentsMargins(0, 0, 0, 0);
        decks.window.layout()->setSpacing(0);
        decks.record(200);
        for (int height = 600; height < 613; ++height) {
            decks.window.resize(701 + height % 7, height);
            QCoreApplication::processEvents();
            decks.record(pointsAFrame);
            decks.pulse();
            const unsigned before = decks.drawnBeside();
            decks.record(pointsAFrame);
            decks.pulse();
            QCOMPARE(decks.drawnBeside(), before + 1);
            const QImage together = decks.picture();
            QCOMPARE(decks.paintedApart(), together);
        }
        QCOMPARE(decks.window.height(), 612);
    }
    void aDeckThatComesAndMovesIsDrawnWhereItIs() {
        DeckWindow decks;
        decks.record(200);
        for (int i = 0; i < 4; ++i) {
            decks.b->graph.setVisible(i % 2 == 1);
            decks.record(pointsAFrame);
            decks.pulse();
            decks.window.resize(1203, 607 + 31 * i);
            decks.pulse();
            QCoreApplication::processEvents();
            const QImage together = decks.picture();
            QCOMPARE(decks.paintedApart(), together);
        }
    }
    void anotherSizeAndAnotherWindowAreDrawnWhole() {
        DeckWindow decks;
        decks.record(300);
        decks.pulse();
        decks.window.resize(1350, 711);
        decks.record(pointsAFrame);
        decks.pulse();
        QCoreApplication::processEvents();
        decks.pulse();
        const QImage resized = decks.picture();
        QCOMPARE(decks.paintedApart(), resized);

        // The companion in a window of its own.
        DeckGraph alone(ModelGraph::INPUT_DECKB);
        alone.graph.show();
        decks.a->graph.setCompanion(&alone.graph);
        alone.graph.setCompanion(&decks.a->graph);
        decks.b->graph.setCompanion(nullptr);
        QCoreApplication::processEvents();
        alone.graph.refresh();
        decks.pulse();
        QCOMPARE(alone.graph.drawnBeside(), 0U);
        decks.a->graph.setCompanion(nullptr);
    }
    // The last one: under ThreadSanitizer a process that has started another one gets no more threads.
    void allOfItAt125Percent() {
        if (qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
            QSKIP("this is the one that runs at 125 %");
        }
        QProcess scaled;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_SCALE_FACTOR"_s, u"1.25"_s);
        scaled.setProcessEnvironment(environment);
        scaled.setProcessChannelMode(QProcess::ForwardedChannels);
        scaled.start(QCoreApplication::applicationFilePath(), {u"tst_qwpainter_beside"_s});
        QVERIFY(scaled.waitForFinished(120000));
        QCOMPARE(scaled.exitStatus(), QProcess::NormalExit);
        QCOMPARE(scaled.exitCode(), 0);
    }
};

GRAMO_TEST_MAIN(TestQWPainterBeside)
#include "tst_qwpainter_beside.moc"
