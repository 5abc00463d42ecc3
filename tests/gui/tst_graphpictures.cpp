// What the graph draws, pixel for pixel against pictures that were looked at: every display with every kind
// of areas, fader and marks, and the grid, disc and wave beside them. How to store them anew:
// pictures/README.md.
#include "gui/support/graphpicturerows.h"
#include "gui/support/storedpictures.h"
#include "support/testmain.h"

#include <QSet>
#include <QTest>

using GraphPictures::Row;

namespace {

const std::vector<Row>& rows() {
    static const std::vector<Row> all = GraphPictures::rows();
    return all;
}

QStringList rowNames() {
    QStringList names;
    for (const Row& row : rows()) {
        names << row.name;
    }
    names.sort();
    return names;
}

// What is in the one and not in the other.
QString missing(const QStringList& wanted, const QStringList& there) {
    const QSet<QString> found(there.begin(), there.end());
    QStringList names;
    for (const QString& name : wanted) {
        if (!found.contains(name)) {
            names << name;
        }
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

class TestGraphPictures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }
    void cleanupTestCase() { resetSharedState(); }

    void thePictureIsTheStoredOne_data() {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < rows().size(); ++i) {
            QTest::newRow(rows()[i].name.toUtf8().constData()) << int(i);
        }
    }
    void thePictureIsTheStoredOne() {
        QFETCH(int, row);
        const Row& wanted = rows()[std::size_t(row)];
        const GraphPictures::Drawn drawn = GraphPictures::draw(wanted.look, wanted.ratio);
        for (const PlacedText& text : drawn.texts) {
            const int ink = inkIn(drawn.image, text);
            const QRectF& place = text.where;
            QVERIFY2(text.there ? ink >= 4 : ink == 0,
                     qPrintable(QStringLiteral("%1 pixels of a text at x %2, y %3")
                                    .arg(ink)
                                    .arg(place.x())
                                    .arg(place.y())));
        }
        const QImage picture = StoredPictures::comparable(drawn.image, drawn.masks);
        if (StoredPictures::storing()) {
            QVERIFY(StoredPictures::store(wanted.name, picture));
        }
        const QString trouble = StoredPictures::trouble(wanted.name, picture);
        QVERIFY2(trouble.isEmpty(), qPrintable(trouble));
    }

    void thereIsARowForEachStoredPictureAndAPictureForEachRow() {
        QCOMPARE(missing(rowNames(), StoredPictures::names()), QString());
        QCOMPARE(missing(StoredPictures::names(), rowNames()), QString());
        QCOMPARE(StoredPictures::names().size(), qsizetype(rows().size()));
    }
    void theListSaysWhatEachPictureMustShow() {
        QMap<QString, QString> said;
        for (const Row& row : rows()) {
            QVERIFY2(!said.contains(row.name), qPrintable(row.name));
            said.insert(row.name, row.shows);
        }
        if (StoredPictures::storing()) {
            QVERIFY(StoredPictures::storeList(said));
        }
        const auto listed = StoredPictures::list();
        QCOMPARE(QStringList(listed.keys()), QStringList(said.keys()));
        for (const Row& row : rows()) {
            QCOMPARE(listed.value(row.name), row.shows);
        }
    }

    // The comparison finds a single pixel, and a mask hides one.
    void onePixelIsADifferenceUnlessItIsMasked() {
        const GraphPictures::Look look = rows().front().look;
        QImage picture = GraphPictures::draw(look, 1.0).image;
        const QImage before = StoredPictures::comparable(picture, {});
        const QImage masked = StoredPictures::comparable(picture, {QRectF(90, 70, 20, 20)});
        picture.setPixel(100, 80, picture.pixel(100, 80) ^ 0x000001);
        QImage shown;
        QCOMPARE(StoredPictures::difference(StoredPictures::comparable(picture, {}), before, shown), 1);
        QCOMPARE(shown.pixelColor(100, 80), QColor(Qt::white));
        QCOMPARE(StoredPictures::difference(StoredPictures::comparable(picture, {QRectF(90, 70, 20, 20)}),
                                            masked, shown),
                 0);
        QCOMPARE(StoredPictures::difference(picture.copy(0, 0, 10, 10), before, shown), -1);
    }
};

GRAMO_TEST_MAIN(TestGraphPictures)
#include "tst_graphpictures.moc"
