#include "state/learnedcontrol.h"

#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_LearnedControl : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void theTextIsChannelSlashController_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("channel");
        QTest::addColumn<int>("controller");
        QTest::newRow("a learned one") << u"0/8"_s << 0 << 8;
        QTest::newRow("the last ones") << u"15/127"_s << 15 << 127;
        QTest::newRow("empty") << QString() << 0 << 0;
        QTest::newRow("no slash") << u"7"_s << 7 << 0;
        QTest::newRow("no channel") << u"/9"_s << 0 << 9;
        QTest::newRow("no controller") << u"3/"_s << 3 << 0;
        QTest::newRow("words") << u"one/two"_s << 0 << 0;
        QTest::newRow("a fraction") << u"1.5/2"_s << 0 << 2;
        QTest::newRow("a third piece") << u"1/2/3"_s << 1 << 2;
    }
    void theTextIsChannelSlashController() {
        QFETCH(QString, text);
        const ObjectMidi control = learnedControl(text);
        QTEST(control.channel(), "channel");
        QTEST(control.controller(), "controller");
        QCOMPARE(control.kind(), 0);
        QCOMPARE(control.crossFader(), ModelCrossFader::MIDDLE);
        QVERIFY(control.name().isEmpty());
    }
};

GRAMO_TEST_APPLESS_MAIN(tst_LearnedControl)
#include "tst_learnedcontrol.moc"
