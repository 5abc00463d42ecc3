#include "state/recordingloopertraining.h"

#include "support/testmain.h"

#include <QTest>

#include <cmath>
#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

// Writes down every signal, in order.
class Ear : public QObject {
    Q_OBJECT
public:
    explicit Ear(RecordingLooperTraining& subject) {
        using R = RecordingLooperTraining;
        connect(&subject, &R::s_Update, this, [this] { heard << u"update"_s; });
        connect(&subject, &R::s_UpdateBpm, this, [this](int bpm) { heard << u"bpm(%1)"_s.arg(bpm); });
        connect(&subject, &R::s_OpenCurve_1, this,
                [this](const QString& path, bool bpm) { heard << u"open1(%1,%2)"_s.arg(path).arg(bpm); });
        connect(&subject, &R::s_OpenCurve_2, this,
                [this](const QString& path, bool bpm) { heard << u"open2(%1,%2)"_s.arg(path).arg(bpm); });
        connect(&subject, &R::s_ResetCurve_1, this, [this] { heard << u"reset1"_s; });
        connect(&subject, &R::s_ResetCurve_2, this, [this] { heard << u"reset2"_s; });
    }
    QStringList take() { return std::exchange(heard, {}); }

private:
    QStringList heard;
};

constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;

} // namespace

class tst_RecordingLooperTraining : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theStartValues() {
        const RecordingLooperTraining subject;
        QCOMPARE(subject.number(), 0);
        QCOMPARE(subject.activatedMode(), ModelActivatedMode::Looper);
        QCOMPARE(subject.input(), ModelInput::TEXT_A);
        QVERIFY(subject.filePath().isEmpty() && subject.title().isEmpty() && subject.author().isEmpty());
        QVERIFY(subject.url().isEmpty() && subject.trackMain().isEmpty());
        QVERIFY(subject.trackA().isEmpty() && subject.trackB().isEmpty());
        QVERIFY(subject.curveFileA().isEmpty() && subject.curveFileB().isEmpty());
        QVERIFY(subject.colorFileA().isEmpty() && subject.colorFileB().isEmpty() &&
                subject.fileHash().isEmpty());
        QCOMPARE(subject.bpmValue(), 84.0);
        QCOMPARE(subject.factorSpeed(), 1.0);
        QCOMPARE(subject.bpmEffective(), 84.0);
        QCOMPARE(subject.beatLength(deckA), 32727.272727272728);
        QCOMPARE(subject.beatLength(deckB), 32727.272727272728);
        QCOMPARE(subject.firstMetronome(), 0.0);
        QCOMPARE(subject.id(), QUuid(u"{00000001-0002-0003-0004-000000000005}"_s));
        QCOMPARE(subject.tabName(), u"Looper"_s);
    }

    void everyShownValueIsStoredAndAnnouncedOnce() {
        RecordingLooperTraining s;
        Ear ear(s);
        const QStringList update{u"update"_s};
        s.setNumber(7);
        QCOMPARE(ear.take(), update);
        QCOMPARE(s.number(), 7);
        s.setActivatedMode(ModelActivatedMode::Training);
        QCOMPARE(ear.take(), update);
        QCOMPARE(s.activatedMode(), ModelActivatedMode::Training);
        s.setInput(ModelInput::TEXT_A_B);
        QCOMPARE(ear.take(), update);
        QCOMPARE(s.input(), ModelInput::TEXT_A_B);
        s.setTitle(u"title"_s);
        QCOMPARE(ear.take(), update);
        s.setAuthor(u"author"_s);
        QCOMPARE(ear.take(), update);
        s.setUrl(u"url"_s);
        QCOMPARE(ear.take(), update);
        s.setTrackMain(u"main"_s);
        QCOMPARE(ear.take(), update);
        s.setFirstMetronome(1234.5);
        QCOMPARE(ear.take(), update);
        s.setTrackA(u"a"_s);
        QCOMPARE(ear.take(), update);
        s.setTrackB(u"b"_s);
        QCOMPARE(ear.take(), update);
        s.setColorFileA(u"ca"_s);
        QCOMPARE(ear.take(), update);
        s.setColorFileB(u"cb"_s);
        QCOMPARE(ear.take(), update);
        s.setColorFileB(u"cb"_s); // also when nothing changes
        QCOMPARE(ear.take(), update);
        QCOMPARE(
            (QStringList{s.title(), s.author(), s.url(), s.trackMain(), s.trackA(), s.trackB(),
                         s.colorFileA(), s.colorFileB()}),
            QStringList({u"title"_s, u"author"_s, u"url"_s, u"main"_s, u"a"_s, u"b"_s, u"ca"_s, u"cb"_s}));
        QCOMPARE(s.firstMetronome(), 1234.5);
    }

    void pathHashIdAndTabAreStoredInSilence() {
        RecordingLooperTraining s;
        Ear ear(s);
        const QUuid id = QUuid::createUuid();
        s.setFilePath(u"path"_s);
        s.setFileHash("hash");
        s.setId(id);
        s.setTabName(u"Recording"_s);
        QVERIFY(ear.take().isEmpty());
        QCOMPARE(s.filePath(), u"path"_s);
        QCOMPARE(s.fileHash(), QByteArray("hash"));
        QCOMPARE(s.id(), id);
        QCOMPARE(s.tabName(), u"Recording"_s);
    }

    void anEmptyCurveFileDropsTheReferenceAndOpensNone() {
        RecordingLooperTraining s;
        Ear ear(s);
        s.setCurveFileA(QString());
        QCOMPARE(ear.take(), QStringList({u"update"_s, u"reset1"_s}));
        s.setCurveFileB(QString());
        QCOMPARE(ear.take(), QStringList({u"update"_s, u"reset2"_s}));
    }

    void aFileThatIsNoCurveOpensNone() {
        RecordingLooperTraining s;
        Ear ear(s);
        for (const QString& path :
             {u"take.wav"_s, u"take.GRW"_s, u"grw"_s, u"take.grw "_s, u"take.grw.wav"_s}) {
            s.setCurveFileA(path);
            QCOMPARE(ear.take(), QStringList({u"update"_s, u"reset1"_s}));
            QCOMPARE(s.curveFileA(), path);
            s.setCurveFileB(path);
            QCOMPARE(ear.take(), QStringList({u"update"_s, u"reset2"_s}));
            QCOMPARE(s.curveFileB(), path);
        }
    }

    void aCurveFileIsOpenedWithItsTempoAfterTheOldOneWasDropped() {
        RecordingLooperTraining s;
        Ear ear(s);
        s.setCurveFileA(u"/x/take.grw"_s);
        QCOMPARE(ear.take(), QStringList({u"update"_s, u"reset1"_s, u"open1(/x/take.grw,1)"_s}));
        s.setCurveFileB(u".grw"_s);
        QCOMPARE(ear.take(), QStringList({u"update"_s, u"reset2"_s, u"open2(.grw,1)"_s}));
    }

    void theFieldStandsWhenItsChangeIsAnnounced() {
        RecordingLooperTraining s;
        QString seen;
        connect(&s, &RecordingLooperTraining::s_Update, this, [&] { seen = s.curveFileA(); });
        s.setCurveFileA(u"x.grw"_s);
        QCOMPARE(seen, u"x.grw"_s);
    }

    void theTempoIsAnnouncedTruncatedAndTheFactorStays() {
        RecordingLooperTraining s;
        Ear ear(s);
        s.setBpmValue(92.7);
        QCOMPARE(ear.take(), QStringList(u"bpm(92)"_s));
        QCOMPARE(s.bpmValue(), 92.7);
        QCOMPARE(s.factorSpeed(), 1.0);
        QCOMPARE(s.bpmEffective(), 84.0);
        s.setBpmValue(-3.9);
        QCOMPARE(ear.take(), QStringList(u"bpm(-3)"_s));
    }

    void aTempoThatNoIntegerHoldsIsAnnouncedAsTheNearestOne() {
        RecordingLooperTraining s;
        Ear ear(s);
        s.setBpmValue(1e300);
        QCOMPARE(ear.take(), QStringList(u"bpm(2147483647)"_s));
        s.setBpmValue(-std::numeric_limits<double>::infinity());
        QCOMPARE(ear.take(), QStringList(u"bpm(-2147483648)"_s));
        s.setBpmValue(std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(ear.take(), QStringList(u"bpm(0)"_s));
    }

    void theFactorIsTheTempoInEffectOverTheWrittenOne() {
        RecordingLooperTraining s;
        Ear ear(s);
        s.setBpmEffective(126.0);
        QCOMPARE(s.factorSpeed(), 1.5);
        QCOMPARE(s.bpmEffective(), 126.0);
        QCOMPARE(s.bpmValue(), 84.0);
        QVERIFY(ear.take().isEmpty());
    }

    void aWrittenTempoOfZeroPassesOnAsItComesOut() {
        RecordingLooperTraining s;
        s.setBpmValue(0.0);
        s.setBpmEffective(84.0);
        QVERIFY(std::isinf(s.factorSpeed()));
        s.setBpmEffective(0.0);
        QVERIFY(std::isnan(s.factorSpeed()));
    }

    void theBeatLengthIsFramesAtTheTempoInEffect() {
        RecordingLooperTraining s;
        const QSample slow(deckA, 0, u"x"_s, 44100.0, 2, 0);
        const QSample fast(deckB, 0, u"x"_s, 96000.0, 2, 0);
        s.setBpmEffective(90.0);
        s.updateBeatLength(deckA, &slow);
        QCOMPARE(s.beatLength(deckA), 29400.0);
        QCOMPARE(s.beatLength(deckB), 60.0 * 48000 / 88);
        s.updateBeatLength(deckB, &fast);
        QCOMPARE(s.beatLength(deckB), 64000.0);
        QCOMPARE(s.beatLength(deckA), 29400.0);
    }

    void anyNameButDeckBMeansDeckAsBeat() {
        RecordingLooperTraining s;
        const QSample sample(deckA, 0, u"x"_s, 44100.0, 2, 0);
        s.setBpmEffective(90.0);
        s.updateBeatLength(ModelGraph::INPUT_MASTER, &sample);
        QCOMPARE(s.beatLength(deckA), 29400.0);
        QCOMPARE(s.beatLength(ModelGraph::INPUT_MASTER), 29400.0);
        QCOMPARE(s.beatLength(ModelGraph::INPUT_1), 29400.0);
        QCOMPARE(s.beatLength(deckB), 60.0 * 48000 / 88);
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_RecordingLooperTraining)
#include "tst_recordingloopertraining.moc"
