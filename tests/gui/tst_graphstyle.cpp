// Fonts and pens of the texts on the graph, and the pens of its straight lines.
#include "painter/graphstyle.h"
#include "support/testmain.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QTest>

namespace {

struct Painted {
    Painted() : painter(&image) {
        QFont font(QStringLiteral("A Family Of The Widget's Own"), 17);
        font.setItalic(true);
        painter.setFont(font);
        painter.setPen(QPen(Qt::blue, 7.0));
    }
    QImage image{10, 10, QImage::Format_ARGB32_Premultiplied};
    QPainter painter;
};

constexpr int normalWeight = 400;
constexpr int boldWeight = 700;

} // namespace

class TestGraphStyle : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void eachTextHasItsFontAndPen_data() {
        QTest::addColumn<ModelGraph::EnumGraph>("item");
        QTest::addColumn<int>("points");
        QTest::addColumn<int>("weight");
        QTest::addColumn<bool>("italic");
        QTest::addColumn<QColor>("color");
        QTest::addColumn<double>("width");
        const QColor tag(95, 96, 97);
        const QColor label(175, 176, 177);
        QTest::newRow("tag") << ModelGraph::TAG << 30 << boldWeight << true << tag << 50.0;
        QTest::newRow("tag number") << ModelGraph::TAG_NUMBER << 60 << boldWeight << false << tag << 50.0;
        QTest::newRow("cursor") << ModelGraph::CURRENT << 8 << normalWeight << false << QColor(255, 0, 0)
                                << 1.0;
        for (const auto item :
             {ModelGraph::LABEL, ModelGraph::GRID, ModelGraph::AXE, ModelGraph::INPUT_DECKA}) {
            QTest::addRow("label %d", int(item)) << item << 8 << normalWeight << false << label << 0.5;
        }
    }
    void eachTextHasItsFontAndPen() {
        QFETCH(ModelGraph::EnumGraph, item);
        Painted widget;
        const QString family = widget.painter.font().family();
        const TextStyle style(widget.painter, item);
        QTEST(widget.painter.font().pointSize(), "points");
        QTEST(int(widget.painter.font().weight()), "weight");
        QTEST(widget.painter.font().italic(), "italic");
        QTEST(widget.painter.pen().color(), "color");
        QTEST(widget.painter.pen().widthF(), "width");
        QCOMPARE(widget.painter.font().family(), family);
    }
    void aStyleEndsWithItsScope() {
        Painted widget;
        const QFont font = widget.painter.font();
        const QPen pen = widget.painter.pen();
        {
            const TextStyle style(widget.painter, ModelGraph::TAG_NUMBER);
            QVERIFY(widget.painter.font() != font);
        }
        QCOMPARE(widget.painter.font(), font);
        QCOMPARE(widget.painter.pen(), pen);
    }

    void eachLineHasItsPen_data() {
        QTest::addColumn<ModelGraph::EnumGraph>("item");
        QTest::addColumn<QColor>("color");
        QTest::addColumn<double>("width");
        const QColor grey(175, 176, 177);
        QTest::newRow("beat or level") << ModelGraph::GRID << grey << 0.5;
        QTest::newRow("bar") << ModelGraph::GRID_FIRST_METRONOM << grey << 4.0;
        QTest::newRow("cursor") << ModelGraph::CURRENT << QColor(255, 0, 0) << 1.0;
        QTest::newRow("axis") << ModelGraph::AXE << grey << 3.0;
    }
    void eachLineHasItsPen() {
        QFETCH(ModelGraph::EnumGraph, item);
        const QPen& pen = linePen(item);
        QTEST(pen.color(), "color");
        QTEST(pen.widthF(), "width");
        QCOMPARE(pen.style(), Qt::SolidLine);
        QCOMPARE(pen.capStyle(), Qt::SquareCap);
        QCOMPARE(pen.joinStyle(), Qt::BevelJoin);
        QCOMPARE(&linePen(item), &pen); // built once
    }
};

GRAMO_TEST_MAIN(TestGraphStyle)
#include "tst_graphstyle.moc"
