#include "painter/strokechain.h"

#include "support/testmain.h"

#include <QTest>

#include <random>
#include <vector>

namespace {

constexpr QRgb red = 0xffff0000U;
constexpr QRgb blue = 0xff0000ffU;
constexpr QRgb weak = 0x80800000U;

CurveStroke stroke(QPointF from, QPointF to, QRgb color = red, double width = 8.0) {
    return {{from.x(), from.y(), to.x(), to.y(), width}, color};
}

/// What a chain draws.
struct Drawn {
    std::vector<CurveStroke> strokes;
    void operator()(const CurveStroke& one) { strokes.push_back(one); }
};

std::vector<CurveStroke> drawn(const std::vector<CurveStroke>& strokes) {
    std::vector<CurveStroke> all;
    const auto draw = [&](const CurveStroke& one) { all.push_back(one); };
    StrokeChain chain;
    for (const CurveStroke& one : strokes) {
        chain.add(one, draw);
    }
    chain.close(draw);
    return all;
}

/// "s" start cap, "j" joint, "-" strip, "e" end cap, of each stroke; and its colour.
QByteArray said(const std::vector<CurveStroke>& strokes) {
    QByteArrayList all;
    for (const CurveStroke& one : strokes) {
        const Capsule& c = one.capsule;
        all << QByteArray(c.startCap ? "s" : "") + (c.before ? "j" : "") + (c.strip ? "-" : "") +
                   (c.endCap ? "e" : "") +
                   (one.color == red    ? " red"
                    : one.color == blue ? " blue"
                                        : " weak");
    }
    return all.join(", ");
}

} // namespace

class TestStrokeChain : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void aLoneStrokeIsDrawnWhole() {
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5})})), QByteArray("s- red, e red"));
    }
    void nothingGivesNothing() { QVERIFY(drawn({}).empty()); }
    void aStrokeThatGoesOnHasNoCaps() {
        const auto all = drawn({stroke({0, 0}, {5, 5}), stroke({5, 5}, {6, 9}), stroke({6, 9}, {7, 2})});
        QCOMPARE(said(all), QByteArray("s- red, j- red, j- red, e red"));
        QCOMPARE(*all[1].capsule.before, QPointF(0, 0));
        QCOMPARE(*all[2].capsule.before, QPointF(5, 5));
        QCOMPARE(all[3].capsule.x2, 7.0);
        QVERIFY(!all[3].capsule.before);
    }
    void anotherColourCoversTheEndOfTheOneBefore() {
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5}), stroke({5, 5}, {6, 9}, blue)})),
                 QByteArray("s- red, e red, s- blue, e blue"));
    }
    void whatStartsElsewhereOrIsAsWideAsNoneHasItsOwnCaps() {
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5}), stroke({5, 6}, {6, 9})})),
                 QByteArray("s- red, e red, s- red, e red"));
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5}), stroke({5, 5}, {6, 9}, red, 1.0)})),
                 QByteArray("s- red, e red, s- red, e red"));
    }
    void whatLetsSomethingThroughIsDrawnWholeEachTime() {
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5}, weak), stroke({5, 5}, {6, 9}, weak)})),
                 QByteArray("s-e weak, s-e weak"));
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5}), stroke({5, 5}, {6, 9}, weak)})),
                 QByteArray("s- red, e red, s-e weak"));
    }
    void aDotIsNeverJoined() {
        QCOMPARE(said(drawn({stroke({0, 0}, {5, 5}), stroke({5, 5}, {5, 5}), stroke({5, 5}, {6, 9})})),
                 QByteArray("s- red, e red, s-e red, s- red, e red"));
    }
    void whatIsClosedIsClosedOnce() {
        Drawn draw;
        const auto record = [&](const CurveStroke& one) { draw(one); };
        StrokeChain chain;
        chain.add(stroke({0, 0}, {5, 5}), record);
        chain.close(record);
        chain.close(record);
        chain.add(stroke({5, 5}, {6, 6}), record);
        QCOMPARE(said(draw.strokes), QByteArray("s- red, e red, s- red"));
    }
    // A kept picture goes on where it ended.
    void aChainThatGoesOnDrawsWhatTheWholeOneDraws() {
        std::mt19937 random(3);
        std::vector<CurveStroke> strokes;
        QPointF from(0, 0);
        for (int i = 0; i < 300; ++i) {
            const QPointF to = from + QPointF(int(random() % 3), int(random() % 5) - 2);
            const QRgb color = std::vector{red, red, red, blue, weak}[random() % 5];
            strokes.push_back(stroke(random() % 7 == 0 ? from + QPointF(0, 40) : from, to, color,
                                     random() % 9 == 0 ? 1.0 : 8.0));
            from = to;
        }
        const QByteArray whole = said(drawn(strokes));
        for (std::size_t cut = 1; cut < strokes.size(); ++cut) {
            Drawn draw;
            const auto record = [&](const CurveStroke& one) { draw(one); };
            StrokeChain first;
            for (std::size_t i = 0; i < cut; ++i) {
                first.add(strokes[i], record);
            }
            StrokeChain second(strokes[cut - 1]);
            for (std::size_t i = cut; i < strokes.size(); ++i) {
                second.add(strokes[i], record);
            }
            second.close(record);
            QCOMPARE(said(draw.strokes), whole);
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(TestStrokeChain)
#include "tst_strokechain.moc"
