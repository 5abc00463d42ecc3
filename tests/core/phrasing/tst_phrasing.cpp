#include "model/constants.h"
#include "phrasing/managephrasing.h"
#include "phrasing/phrasing.h"
#include "support/phrasingareas.h"
#include "support/testmain.h"

#include <QTest>

namespace {
constexpr auto deckA = ModelGraph::INPUT_DECKA;
constexpr auto deckB = ModelGraph::INPUT_DECKB;
} // namespace

class tst_Phrasing : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void bothListsAreEmptyAndBothIdsTheDefaultAtStart() {
        const Phrasing phrasing;
        const QUuid defaultId(QStringLiteral("{00000001-0002-0003-0004-000000000005}"));
        for (const auto deck : {deckA, deckB}) {
            QVERIFY(phrasing.listPhrasing(deck).isEmpty());
            QCOMPARE(phrasing.idPhrasingActivated(deck), defaultId);
        }
        QCOMPARE(Constant::defaultId, defaultId);
    }

    void theDecksHaveListsAndIdsOfTheirOwn() {
        Phrasing phrasing;
        const QPhrasingList a = {area(0.0, 90.0)};
        const QPhrasingList b = {area(90.0, 180.0), area(180.0, 270.0)};
        const QUuid idA = QUuid::createUuid();
        const QUuid idB = QUuid::createUuid();
        phrasing.setListPhrasing(deckA, a);
        phrasing.setListPhrasing(deckB, b);
        phrasing.setIdPhrasingActivated(deckA, idA);
        phrasing.setIdPhrasingActivated(deckB, idB);
        QCOMPARE(phrasing.listPhrasing(deckA), a);
        QCOMPARE(phrasing.listPhrasing(deckB), b);
        QCOMPARE(phrasing.idPhrasingActivated(deckA), idA);
        QCOMPARE(phrasing.idPhrasingActivated(deckB), idB);
    }

    void anyNameButDeckAMeansDeckB() {
        Phrasing phrasing;
        const QPhrasingList list = {area(0.0, 90.0)};
        const QUuid id = QUuid::createUuid();
        phrasing.setListPhrasing(ModelGraph::NOT_USED, list);
        phrasing.setIdPhrasingActivated(ModelGraph::INPUT_1, id);
        QCOMPARE(phrasing.listPhrasing(deckB), list);
        QCOMPARE(phrasing.idPhrasingActivated(deckB), id);
        QVERIFY(phrasing.listPhrasing(deckA).isEmpty());
        QCOMPARE(phrasing.idPhrasingActivated(deckA), Constant::defaultId);
    }

    void theIdsGoBackToTheDefault() {
        Phrasing phrasing;
        phrasing.setIdPhrasingActivated(deckA, QUuid::createUuid());
        phrasing.setIdPhrasingActivated(deckB, QUuid::createUuid());
        QVERIFY(QMetaObject::invokeMethod(&phrasing, "initIdPhrasingActivated"));
        QCOMPARE(phrasing.idPhrasingActivated(deckA), Constant::defaultId);
        QCOMPARE(phrasing.idPhrasingActivated(deckB), Constant::defaultId);
    }

    void clearTakesTheAreasOffOneDeck() {
        Phrasing phrasing;
        phrasing.setListPhrasing(deckA, {area(0.0, 90.0)});
        phrasing.setListPhrasing(deckB, {area(0.0, 90.0)});
        QVERIFY(QMetaObject::invokeMethod(&phrasing, "clear", Q_ARG(ModelGraph::EnumGraph, deckA)));
        QVERIFY(phrasing.listPhrasing(deckA).isEmpty());
        QCOMPARE(phrasing.listPhrasing(deckB).size(), 1);
    }

    void anAreaThatWasClearedLivesOnWhereItIsShown() {
        Phrasing phrasing;
        ManagePhrasing shown(deckA);
        const std::weak_ptr<QPhrasing> watch = [&] {
            const QPhrasingPtr one = area(0.0, 90.0);
            phrasing.setListPhrasing(deckA, {one});
            shown.setListPhrasing({one});
            return one;
        }();
        phrasing.clear(deckA);
        QCOMPARE(shown.listPhrasing().constFirst()->angleEnd(), 90.0);
        shown.initAreas();
        QVERIFY(watch.expired());
    }

    void theAreasGoWithTheirLastHolder() {
        std::weak_ptr<QPhrasing> watch;
        {
            Phrasing phrasing;
            const QPhrasingPtr one = area(0.0, 90.0);
            watch = one;
            phrasing.setListPhrasing(deckB, {one});
        }
        QVERIFY(watch.expired());
    }

    void anEditShowsInEveryList() {
        Phrasing phrasing;
        const QPhrasingPtr one = area(0.0, 90.0);
        phrasing.setListPhrasing(deckA, {one});
        phrasing.setListPhrasing(deckB, {one});
        one->setAngleEnd(45.0);
        QCOMPARE(phrasing.listPhrasing(deckA).constFirst()->angleEnd(), 45.0);
        QCOMPARE(phrasing.listPhrasing(deckB).constFirst()->angleEnd(), 45.0);
    }

    void aNewListIsAnnounced() {
        Phrasing phrasing;
        QList<ModelGraph::EnumGraph> heard;
        connect(&phrasing, &Phrasing::s_ListPhrasingChanged, &phrasing, [&](ModelGraph::EnumGraph deck) {
            QCOMPARE(phrasing.listPhrasing(deck).size(), deck == deckA ? 1 : 0); // in place already
            heard << deck;
        });
        phrasing.setListPhrasing(deckA, {area(0.0, 90.0)});
        phrasing.clear(deckB);
        QCOMPARE(heard, (QList<ModelGraph::EnumGraph>{deckA, deckB}));
    }
};

GRAMO_TEST_GUILESS_MAIN(tst_Phrasing)
#include "tst_phrasing.moc"
