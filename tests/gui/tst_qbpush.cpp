#include "button/qbpush.h"

#include "gui/support/guiprocess.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <QTest>

class TestQBPush : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareGuiProcess(); }

    void sizeAndPicture() {
        QBPush button(QStringLiteral("next.png"));
        QCOMPARE(button.minimumSize(), QSize(50, 50));
        QCOMPARE(button.maximumSize(), QSize(50, 50));
        QCOMPARE(button.iconSize(), QSize(30, 30));
        QVERIFY(!button.icon().isNull());
    }
    void aPressSignals() {
        QBPush button(QStringLiteral("next.png"));
        QSignalSpy push(&button, &QBPush::s_push);
        QTest::mouseClick(&button, Qt::LeftButton);
        button.mouseClick();
        QCOMPARE(push.count(), 2);
    }
    void aDisabledButtonKeepsQuiet() {
        QBPush button(QStringLiteral("next.png"));
        QSignalSpy push(&button, &QBPush::s_push);
        button.setControlEnabled(false);
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(push.count(), 0);
        button.setControlEnabled(true);
        QTest::mouseClick(&button, Qt::LeftButton);
        QCOMPARE(push.count(), 1);
    }
};

GRAMO_TEST_MAIN(TestQBPush)
#include "tst_qbpush.moc"
