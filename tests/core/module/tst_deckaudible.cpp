#include "module/deckaudible.h"

#include "support/testmain.h"

#include <QTest>

class tst_DeckAudible : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theMiddleLetsBothDecksBeHeard() {
        for (const bool mix : {false, true}) {
            for (const bool reverse : {false, true}) {
                QVERIFY(deckAudible(ModelCrossFader::MIDDLE, mix, reverse, ModelGraph::INPUT_DECKA));
                QVERIFY(deckAudible(ModelCrossFader::MIDDLE, mix, reverse, ModelGraph::INPUT_DECKB));
            }
        }
    }

    void withoutMixBothEndsAreSilent() {
        for (const auto fader : {ModelCrossFader::LEFT, ModelCrossFader::RIGHT}) {
            for (const bool reverse : {false, true}) {
                QVERIFY(!deckAudible(fader, false, reverse, ModelGraph::INPUT_DECKA));
                QVERIFY(!deckAudible(fader, false, reverse, ModelGraph::INPUT_DECKB));
            }
        }
    }

    void withMixTheTableDecides() {
        struct Row {
            ModelCrossFader::EnumCrossFader fader;
            bool deckA;
            bool deckAReversed;
            bool deckB;
            bool deckBReversed;
        };
        for (const Row& row : {Row{ModelCrossFader::RIGHT, false, true, true, false},
                               Row{ModelCrossFader::LEFT, true, false, false, true}}) {
            QCOMPARE(deckAudible(row.fader, true, false, ModelGraph::INPUT_DECKA), row.deckA);
            QCOMPARE(deckAudible(row.fader, true, true, ModelGraph::INPUT_DECKA), row.deckAReversed);
            QCOMPARE(deckAudible(row.fader, true, false, ModelGraph::INPUT_DECKB), row.deckB);
            QCOMPARE(deckAudible(row.fader, true, true, ModelGraph::INPUT_DECKB), row.deckBReversed);
        }
    }

    void anyNameButDeckACountsAsDeckB() {
        for (int name = ModelGraph::GRID; name <= ModelGraph::NOT_USED; ++name) {
            const auto deck = static_cast<ModelGraph::EnumGraph>(name);
            QCOMPARE(deckAudible(ModelCrossFader::LEFT, true, false, deck), deck == ModelGraph::INPUT_DECKA);
            QCOMPARE(deckAudible(ModelCrossFader::RIGHT, true, false, deck), deck != ModelGraph::INPUT_DECKA);
        }
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_DeckAudible)
#include "tst_deckaudible.moc"
