#include "module/streamrouting.h"

#include "support/testmain.h"

#include <QTest>

namespace {

// One situation and the streams that it asks for. A stream is the recorder, whose device it opens, and which
// of master, deck A and deck B it serves. A dot stands for anything.
struct Row {
    const char* decks;  // "A=B", "A,B" (two devices), "A", "B" or "" (no deck)
    const char* record; // "on" or "off"
    const char* master; // "A" or "B" (the device of that deck), "other", "" (none)
    const char* streams;
};

const std::vector<Row> table{
    {"A=B", "on", "A", "All:A:MAB"},
    {"A=B", "on", "other", "All:A:-AB Master:M:M--"},
    {"A=B", "on", "", "All:A:-AB"},
    {"A=B", "off", "A", "All:A:-AB Master:M:M--"},
    {"A=B", "off", "other", "All:A:-AB Master:M:M--"},
    {"A=B", "off", "", "All:A:-AB"},
    {"A,B", "on", "A", "All:A:MA- DeckB:B:--B"},
    {"A,B", "on", "B", "All:A:-A- DeckB:B:M-B"},
    {"A,B", "on", "other", "All:A:-A- DeckB:B:--B Master:M:M--"},
    {"A,B", "on", "", "All:A:-A- DeckB:B:--B"},
    {"A,B", "off", "A", "All:A:-A- DeckB:B:--B Master:M:M--"},
    {"A,B", "off", "B", "All:A:-A- DeckB:B:--B Master:M:M--"},
    {"A,B", "off", "other", "All:A:-A- DeckB:B:--B Master:M:M--"},
    {"A,B", "off", "", "All:A:-A- DeckB:B:--B"},
    {"A", "on", "A", "All:A:MA-"},
    {"A", "on", "other", "All:A:-A- Master:M:M--"},
    {"A", "on", "", "All:A:-A-"},
    {"A", "off", "A", "All:A:-A- Master:M:M--"},
    {"A", "off", "other", "All:A:-A- Master:M:M--"},
    {"A", "off", "", "All:A:-A-"},
    {"B", "on", "B", "All:B:M-B"},
    {"B", "on", "other", "All:B:--B Master:M:M--"},
    {"B", "on", "", "All:B:--B"},
    {"B", "off", "B", "All:B:--B Master:M:M--"},
    {"B", "off", "other", "All:B:--B Master:M:M--"},
    {"B", "off", "", "All:B:--B"},
    {"", "on", "other", "Master:M:M--"},
    {"", "off", "other", "Master:M:M--"},
    {"", "on", "", ""},
    {"", "off", "", ""},
};

QByteArray textOf(const std::vector<StreamRoute>& routes) {
    QByteArray text;
    for (const StreamRoute& route : routes) {
        text += route.worker == StreamRoute::All     ? "All:"
                : route.worker == StreamRoute::DeckB ? "DeckB:"
                                                     : "Master:";
        text += route.role == ModelGraph::INPUT_DECKA    ? "A:"
                : route.role == ModelGraph::INPUT_DECKB  ? "B:"
                : route.role == ModelGraph::INPUT_MASTER ? "M:"
                                                         : "?:";
        text += route.master ? 'M' : '-';
        text += route.deckA ? 'A' : '-';
        text += route.deckB ? 'B' : '-';
        text += ' ';
    }
    return text.trimmed();
}

// Which row a situation belongs to.
Row situation(const InputDevices& d) {
    const bool a = d.deckA >= 0;
    const bool b = d.deckB >= 0;
    const char* decks = a && b ? (d.deckA == d.deckB ? "A=B" : "A,B") : a ? "A" : b ? "B" : "";
    const char* master = d.master < 0               ? ""
                         : a && d.master == d.deckA ? "A"
                         : b && d.master == d.deckB ? "B"
                                                    : "other";
    return {decks, d.recording ? "on" : "off", master, ""};
}

} // namespace

class tst_StreamRouting : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyCombinationOfDevicesFollowsTheTable() {
        std::size_t rowsSeen = 0;
        std::vector<bool> seen(table.size());
        for (const bool recording : {false, true}) {
            for (int a = -1; a <= 2; ++a) {
                for (int b = -1; b <= 2; ++b) {
                    for (int m = -1; m <= 2; ++m) {
                        const InputDevices devices{a, b, m, recording};
                        const Row here = situation(devices);
                        const auto row = std::find_if(table.begin(), table.end(), [&](const Row& r) {
                            return !qstrcmp(r.decks, here.decks) && !qstrcmp(r.record, here.record) &&
                                   !qstrcmp(r.master, here.master);
                        });
                        QVERIFY(row != table.end());
                        QVERIFY2(textOf(routeStreams(devices)) == row->streams,
                                 qPrintable(QStringLiteral("A %1 B %2 M %3 recording %4: %5 instead of %6")
                                                .arg(a)
                                                .arg(b)
                                                .arg(m)
                                                .arg(recording)
                                                .arg(QString::fromLatin1(textOf(routeStreams(devices))),
                                                     QString::fromLatin1(row->streams))));
                        const auto place = std::size_t(row - table.begin());
                        rowsSeen += seen[place] ? 0 : 1;
                        seen[place] = true;
                    }
                }
            }
        }
        QCOMPARE(rowsSeen, table.size()); // every row was met
    }

    void allInputsOnOneCardWithRecordingAreOneStream() {
        QCOMPARE(textOf(routeStreams({7, 7, 7, true})), QByteArray("All:A:MAB"));
    }

    void masterOnDeckBsCardIsRecordedByTheSecondRecorder() {
        QCOMPARE(textOf(routeStreams({1, 2, 2, true})), QByteArray("All:A:-A- DeckB:B:M-B"));
    }

    void withoutRecordingTheMasterGetsAStreamOfItsOwnOnTheSameCard() {
        QCOMPARE(textOf(routeStreams({0, 0, 0, false})), QByteArray("All:A:-AB Master:M:M--"));
    }

    void aLoneDeckBGoesToTheFirstRecorder() {
        QCOMPARE(textOf(routeStreams({-1, 3, -1, false})), QByteArray("All:B:--B"));
    }

    void noDeviceIsOpenedTwiceWhileRecording() {
        for (int a = -1; a <= 2; ++a) {
            for (int b = -1; b <= 2; ++b) {
                for (int m = -1; m <= 2; ++m) {
                    QList<int> opened;
                    for (const StreamRoute& route : routeStreams({a, b, m, true})) {
                        const int device = route.role == ModelGraph::INPUT_DECKA   ? a
                                           : route.role == ModelGraph::INPUT_DECKB ? b
                                                                                   : m;
                        QVERIFY(device >= 0 && !opened.contains(device));
                        opened << device;
                    }
                }
            }
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_StreamRouting)
#include "tst_streamrouting.moc"
